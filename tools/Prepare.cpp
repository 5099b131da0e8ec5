#include "KeyboardShortcuts/Shortcut.h"
#include "KeyboardShortcuts/ShortcutName.h"
#include "input/ModifierGesture.h"
#include "platform/linux/files/JsonUserDefaults.h"
#include "platform/linux/files/PathBookmarks.h"
#include "platform/linux/qt/QtExecutor.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <array>
#include <cstdlib>

using namespace Quillory;
using namespace Qt::StringLiterals;

namespace {

auto const bookmarkKey = u"libraryBookmark"_s;

struct Keycap {
    std::int64_t virtualKeyCode;
    char const* text;
};

// What is printed on the keys of a US keyboard.
constexpr Keycap keycaps[] { { 0, "A" }, { 11, "B" }, { 8, "C" }, { 2, "D" }, { 14, "E" }, { 3, "F" }, { 5, "G" },
    { 4, "H" }, { 34, "I" }, { 38, "J" }, { 40, "K" }, { 37, "L" }, { 46, "M" }, { 45, "N" }, { 31, "O" }, { 35, "P" },
    { 12, "Q" }, { 15, "R" }, { 1, "S" }, { 17, "T" }, { 32, "U" }, { 9, "V" }, { 13, "W" }, { 7, "X" }, { 16, "Y" },
    { 6, "Z" }, { 29, "0" }, { 18, "1" }, { 19, "2" }, { 20, "3" }, { 21, "4" }, { 23, "5" }, { 22, "6" }, { 26, "7" },
    { 28, "8" }, { 25, "9" }, { 27, "-" }, { 24, "=" }, { 33, "[" }, { 30, "]" }, { 42, "\\" }, { 41, ";" },
    { 39, "'" }, { 43, "," }, { 47, "." }, { 44, "/" }, { 50, "`" }, { 36, "Return" }, { 48, "Tab" }, { 49, "Space" },
    { 51, "Backspace" }, { 53, "Escape" }, { 122, "F1" }, { 120, "F2" }, { 99, "F3" }, { 118, "F4" }, { 96, "F5" },
    { 97, "F6" }, { 98, "F7" }, { 100, "F8" }, { 101, "F9" }, { 109, "F10" }, { 103, "F11" }, { 111, "F12" } };

QString keysOf(Shortcut const& shortcut)
{
    QStringList keys;
    auto const modifiers = shortcut.modifiers();
    if (contains(modifiers, ModifierFlags::control))
        keys << u"Ctrl"_s;
    if (contains(modifiers, ModifierFlags::option))
        keys << u"Alt"_s;
    if (contains(modifiers, ModifierFlags::shift))
        keys << u"Shift"_s;
    if (contains(modifiers, ModifierFlags::command))
        keys << u"Super"_s;
    auto const keycap = std::ranges::find(keycaps, shortcut.carbonKeyCode, &Keycap::virtualKeyCode);
    keys << (keycap != std::ranges::end(keycaps) ? QLatin1StringView(keycap->text)
                                                 : u"the key with code %1"_s.arg(shortcut.carbonKeyCode));
    return keys.join(u'+');
}

[[noreturn]] void fail(QString const& sentence)
{
    QTextStream(stderr) << "quillory-prepare: " << sentence << '\n';
    std::exit(1);
}

void say(QString const& sentence)
{
    QTextStream(stdout) << sentence << '\n';
}

void connectFolder(UserDefaults& defaults, QString const& folder)
{
    PathBookmarks const bookmarks;
    auto const path = QDir(folder).absolutePath();
    if (!bookmarks.isReadable(path))
        fail(u"\"%1\" is no folder that can be read."_s.arg(folder));
    auto const bookmark = bookmarks.bookmark(path);
    if (!bookmark)
        fail(u"\"%1\" can't be connected: %2."_s.arg(folder, bookmark.error().localizedDescription()));
    defaults.setValue(bookmarkKey, *bookmark);
}

void tellFolder(UserDefaults const& defaults)
{
    auto const stored = defaults.get<QByteArray>(bookmarkKey);
    if (!stored)
        return;
    if (auto const resolved = PathBookmarks().resolve(*stored))
        say(u"The sheets are in %1"_s.arg(resolved->path));
    else
        say(u"The folder of the last time can't be reached: %1. Name another one to connect it."_s.arg(
            resolved.error().localizedDescription()));
}

struct Offer {
    ShortcutName name;
    std::int64_t keyCode; // with Ctrl and Alt
    QString sentence; // with the keys for %1
    QString switchedOff;
};

std::array<Offer, 2> offers()
{
    return { { { ShortcutName::toggleQuillory(), 40, u"Press %1 to call the reader, and again to send it away."_s,
                   u"No shortcut calls the reader: it is switched off in the settings."_s },
        { ShortcutName::peekQuillory(), 38, u"Hold %1 to peek: the reader stays while the keys are down."_s,
            u"No shortcut peeks: it is switched off in the settings."_s } } };
}

void storeIfNone(UserDefaults& defaults, Offer const& offer)
{
    auto const key = offer.name.defaultsKey();
    auto const disabled = defaults.get<bool>(key) == false;
    auto const text = defaults.get<QString>(key);
    if (disabled || (text && Shortcut::decode(*text)))
        return;
    auto const modifiers = Shortcut::carbonModifiersOf(ModifierFlags::control | ModifierFlags::option);
    defaults.setValue(key, Shortcut { offer.keyCode, modifiers }.encoded());
}

void tell(UserDefaults const& defaults, Offer const& offer)
{
    auto const text = defaults.get<QString>(offer.name.defaultsKey());
    if (auto const shortcut = text ? Shortcut::decode(*text) : std::nullopt)
        say(offer.sentence.arg(keysOf(*shortcut)));
    else
        say(offer.switchedOff);
}

void storeGesture(UserDefaults& defaults, QString const& name)
{
    auto const gesture = modifierGestureFromRawValue(name);
    if (!gesture)
        fail(u"\"%1\" is no gesture: it is off, shift or option."_s.arg(name));
    defaults.setValue(u"modifierGesture"_s, rawValue(*gesture));
}

}

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    QCoreApplication::setApplicationName(u"quillory-prepare"_s);

    QCommandLineOption const folder(u"folder"_s, u"Connect this folder."_s, u"path"_s);
    QCommandLineOption const folderIfNone(u"folder-if-none"_s, u"Connect this folder where none is yet."_s, u"path"_s);
    QCommandLineOption const shortcutsIfNone(
        u"shortcuts-if-none"_s, u"Store Ctrl+Alt+K as toggle and Ctrl+Alt+J as peek where none is yet."_s);
    QCommandLineOption const gesture(
        u"gesture"_s, u"Peek by tapping this key twice and holding it: shift, option (Alt) or off."_s, u"key"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Prepares the settings for a start, and says how the reader is called. The program must not be running."_s);
    parser.addHelpOption();
    parser.addOptions({ folder, folderIfNone, shortcutsIfNone, gesture });
    parser.process(application);
    if (!parser.positionalArguments().isEmpty())
        fail(u"\"%1\" is no option."_s.arg(parser.positionalArguments().first()));

    QtExecutor executor;
    JsonUserDefaults defaults(JsonUserDefaults::standardPath(), executor);
    if (auto const damaged = defaults.damagedFile())
        say(u"The settings were damaged; they are kept in %1"_s.arg(*damaged));

    if (parser.isSet(folder))
        connectFolder(defaults, parser.value(folder));
    else if (parser.isSet(folderIfNone) && !defaults.get<QByteArray>(bookmarkKey))
        connectFolder(defaults, parser.value(folderIfNone));
    for (auto const& offer : offers()) {
        if (parser.isSet(shortcutsIfNone))
            storeIfNone(defaults, offer);
    }
    if (parser.isSet(gesture))
        storeGesture(defaults, parser.value(gesture));

    defaults.flush();
    if (auto const error = defaults.lastWriteError())
        fail(u"The settings in %1 can't be written: %2."_s.arg(
            JsonUserDefaults::standardPath(), error->localizedDescription()));
    tellFolder(defaults);
    for (auto const& offer : offers())
        tell(defaults, offer);
    return 0;
}
