#include "linux/freedesktop/DesktopShortcutFormats.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamReader>

namespace Quillory::DesktopShortcutFormats {

namespace {

// A modifier that the program doesn't know makes a combination that can't be ours.
std::optional<ModifierFlags> modifierNamed(QString const& name)
{
    static QHash<QString, ModifierFlags> const modifiers {
        { QStringLiteral("control"), ModifierFlags::control },
        { QStringLiteral("ctrl"), ModifierFlags::control },
        { QStringLiteral("primary"), ModifierFlags::control },
        { QStringLiteral("alt"), ModifierFlags::option },
        { QStringLiteral("mod1"), ModifierFlags::option },
        { QStringLiteral("shift"), ModifierFlags::shift },
        { QStringLiteral("super"), ModifierFlags::command },
        { QStringLiteral("meta"), ModifierFlags::command },
        { QStringLiteral("mod4"), ModifierFlags::command },
    };
    auto const found = modifiers.constFind(name.toLower());
    return found == modifiers.constEnd() ? std::nullopt : std::optional(*found);
}

// Names that KDE has for keys, in the words of X11; signs and letters stand for themselves.
QString symbolName(QString const& key)
{
    static QHash<QString, QString> const names {
        { QStringLiteral("PgUp"), QStringLiteral("Page_Up") },
        { QStringLiteral("PgDown"), QStringLiteral("Page_Down") },
        { QStringLiteral("Esc"), QStringLiteral("Escape") },
        { QStringLiteral("Del"), QStringLiteral("Delete") },
        { QStringLiteral("Ins"), QStringLiteral("Insert") },
        { QStringLiteral("Backspace"), QStringLiteral("BackSpace") },
        { QStringLiteral("Enter"), QStringLiteral("KP_Enter") },
        { QStringLiteral("Space"), QStringLiteral("space") },
        { QStringLiteral("Backtab"), QStringLiteral("Tab") },
    };
    if (auto const found = names.constFind(key); found != names.constEnd())
        return *found;
    bool const isSign = key.size() == 1 && !key.at(0).isLetterOrNumber();
    return isSign ? QStringLiteral("U%1").arg(int(key.at(0).unicode()), 4, 16, QLatin1Char('0')) : key;
}

std::optional<SymbolicHotKey> combination(
    QStringList const& modifiers, QString const& symbol, KeyboardLayout const& layout)
{
    SymbolicHotKey hotKey;
    for (auto const& name : modifiers) {
        auto const modifier = modifierNamed(name);
        if (!modifier)
            return std::nullopt;
        hotKey.modifiers = hotKey.modifiers | *modifier;
    }
    auto const keyCode = layout.keyCode(symbol);
    if (!keyCode)
        return std::nullopt;
    hotKey.keyCode = *keyCode;
    return hotKey;
}

// "Meta+Shift+Tab"; the last part is the key, "+" itself too.
std::optional<SymbolicHotKey> fromSequence(QString const& sequence, KeyboardLayout const& layout)
{
    if (sequence.isEmpty() || sequence.contains(QLatin1Char(' ')))
        return std::nullopt; // several strokes, or a key that keyboards here lack
    auto const split = sequence.lastIndexOf(QLatin1Char('+'), -2);
    auto const modifiers = split < 0 ? QString() : sequence.left(split);
    return combination(
        modifiers.split(QLatin1Char('+'), Qt::SkipEmptyParts), symbolName(sequence.mid(split + 1)), layout);
}

template<typename Decode>
void append(std::vector<SymbolicHotKey>& all, QString const& text, KeyboardLayout const& layout, Decode decode)
{
    if (auto const hotKey = decode(text, layout))
        all.push_back(*hotKey);
}

}

std::optional<SymbolicHotKey> fromAccelerator(QString const& accelerator, KeyboardLayout const& layout)
{
    static QRegularExpression const form(QStringLiteral("^((?:<[^<>]+>)*)([A-Za-z0-9_]+)$"));
    auto const match = form.match(accelerator);
    if (!match.hasMatch())
        return std::nullopt;
    auto modifiers = match.captured(1);
    return combination(
        modifiers.remove(QLatin1Char('<')).split(QLatin1Char('>'), Qt::SkipEmptyParts), match.captured(2), layout);
}

std::vector<SymbolicHotKey> fromSettingsListing(QString const& listing, KeyboardLayout const& layout)
{
    static QRegularExpression const quoted(QStringLiteral("'([^']*)'"));
    std::vector<SymbolicHotKey> all;
    for (auto texts = quoted.globalMatch(listing); texts.hasNext();)
        append(all, texts.next().captured(1), layout, fromAccelerator);
    return all;
}

std::vector<SymbolicHotKey> fromGlobalShortcuts(QString const& text, KeyboardLayout const& layout)
{
    std::vector<SymbolicHotKey> all;
    for (auto const& line : text.split(QLatin1Char('\n'))) {
        auto const value = line.indexOf(QLatin1Char('='));
        if (value < 0 || line.startsWith(QLatin1Char('[')) || line.startsWith(QLatin1StringView("_k_friendly_name")))
            continue;
        // The combinations in use, what they were at first, and a title; a comma as the key is escaped.
        static QRegularExpression const end(QStringLiteral("(?<!\\\\),"));
        auto const inUse = line.mid(value + 1).split(end).first();
        for (auto sequence : inUse.split(QStringLiteral("\\t")))
            append(all, sequence.replace(QLatin1StringView("\\,"), QLatin1StringView(",")), layout, fromSequence);
    }
    return all;
}

std::vector<SymbolicHotKey> fromKeyboardChannel(QByteArray const& xml, KeyboardLayout const& layout)
{
    std::vector<SymbolicHotKey> all;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != QLatin1StringView("property"))
            continue;
        if (reader.attributes().value(QLatin1StringView("type")) == QLatin1StringView("string"))
            append(all, reader.attributes().value(QLatin1StringView("name")).toString(), layout, fromAccelerator);
    }
    return all;
}

}
