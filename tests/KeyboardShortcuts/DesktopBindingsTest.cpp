#include "KeyboardShortcuts/bindings/DesktopBindings.h"

#include "support/Test.h"

#include <QFile>

#include <map>

namespace Quillory {
namespace {

Shortcut shortcut(std::int64_t keyCode, ModifierFlags modifiers)
{
    return { keyCode, Shortcut::carbonModifiersOf(modifiers) };
}

std::optional<QString> symbolName(std::uint16_t keyCode)
{
    static std::map<std::uint16_t, QString> const names { { 6, u"y"_s }, { 38, u"j"_s }, { 40, u"k"_s },
        { 43, u"comma"_s }, { 96, u"F5"_s }, { 116, u"Prior"_s } };
    auto const found = names.find(keyCode);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

// The text for every desktop, or why there is none.
QString textOfAll(DesktopBindings::Keys const& keys)
{
    QString text;
    for (auto const& desktop : DesktopBindings::desktops()) {
        auto const bound = DesktopBindings(keys, symbolName, u"quillory"_s).textFor(desktop);
        text += u"== "_s + desktop + u'\n' + (bound ? *bound : bound.error() + u'\n');
    }
    return text;
}

TEST(DesktopBindings, Each_desktop_gets_its_own_words)
{
    auto const everyModifier = ModifierFlags::control | ModifierFlags::option | ModifierFlags::shift
        | ModifierFlags::command;
    auto const pageUp = shortcut(116, everyModifier);
    struct Case {
        QString golden;
        DesktopBindings::Keys keys;
    };
    for (auto const& [golden, keys] : std::initializer_list<Case> {
             { u"usual"_s, {} },
             { u"stored"_s, { pageUp, shortcut(96, ModifierFlags::none) } },
             { u"same"_s, { pageUp, pageUp } },
             { u"comma"_s, { shortcut(43, ModifierFlags::control), shortcut(6, ModifierFlags::command) } },
             { u"nameless"_s, { shortcut(6, ModifierFlags::option), shortcut(7, ModifierFlags::option) } },
         }) {
        QFile file(QStringLiteral(QUILLORY_BINDINGS "/") + golden + u".txt"_s);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << golden.toStdString();
        EXPECT_EQ(textOfAll(keys), QString::fromUtf8(file.readAll())) << golden.toStdString();
    }
}

}
}
