#include "library/ShortcutText.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

using Modifier = ShortcutText::Modifier;

constexpr std::array<Modifier, 5> modifierTable { {
    { u"function", u"fn", u"Fn" },
    { u"control", u"⌃", u"Ctrl" },
    { u"option", u"⌥", u"Alt" },
    { u"shift", u"⇧", u"Shift" },
    { u"command", u"⌘", u"Super" },
} };

struct Key {
    QStringView name;
    QStringView symbol;
    QStringView word;
};

constexpr std::array<Key, 16> keyTable { {
    { u"return", u"↩", u"Enter" },
    { u"enter", u"⌤", u"Num Enter" },
    { u"tab", u"⇥", u"Tab" },
    { u"escape", u"⎋", u"Esc" },
    { u"space", u"Space", u"Space" },
    { u"delete", u"⌫", u"Backspace" },
    { u"forwardDelete", u"⌦", u"Del" },
    { u"capsLock", u"⇪", u"Caps Lock" },
    { u"arrowLeft", u"←", u"Left" },
    { u"arrowRight", u"→", u"Right" },
    { u"arrowUp", u"↑", u"Up" },
    { u"arrowDown", u"↓", u"Down" },
    { u"home", u"↖", u"Home" },
    { u"end", u"↘", u"End" },
    { u"pageUp", u"⇞", u"PgUp" },
    { u"pageDown", u"⇟", u"PgDn" },
} };

constexpr qsizetype usualStep = 24; // characters, as spoken

template<typename AppendStep>
QString joined(ShortcutSheet::Shortcut const& shortcut, QStringView separator, AppendStep appendStep)
{
    QString text;
    text.reserve(shortcut.steps.size() * usualStep);
    for (auto const& step : shortcut.steps) {
        if (&step != &shortcut.steps.first())
            text += separator;
        auto const held = ShortcutText::modifiersOf(step);
        for (std::size_t index = 0; index < modifierTable.size(); ++index) {
            if (held[index])
                appendStep(text, modifierTable[index]);
        }
        appendStep(text, step.key);
    }
    return text;
}

}

std::span<Modifier const, 5> ShortcutText::modifiers()
{
    return modifierTable;
}

ShortcutText::ModifierSet ShortcutText::modifiersOf(ShortcutSheet::Step const& step)
{
    ModifierSet held;
    for (QStringView const name : step.modifiers) {
        for (std::size_t index = 0; index < modifierTable.size(); ++index) {
            // Asked for every step of a sheet while its window is resized: all names differ in these two.
            auto const& known = modifierTable[index].name;
            if (name.size() == known.size() && name.back() == known.back() && name == known)
                held.set(index);
        }
    }
    return held;
}

QString ShortcutText::keyText(QString const& key, KeyNames names)
{
    auto const named = std::ranges::find(keyTable, QStringView(key), &Key::name);
    if (named == keyTable.end())
        return key.toUpper();
    return (names == KeyNames::symbols ? named->symbol : named->word).toString();
}

QString ShortcutText::shown(ShortcutSheet::Shortcut const& shortcut, KeyNames names)
{
    struct {
        KeyNames names;
        void operator()(QString& text, Modifier const& modifier) const
        {
            if (names == KeyNames::symbols)
                text += modifier.symbol;
            else
                (text += modifier.word) += wordJoint;
        }
        void operator()(QString& text, QString const& key) const { text += keyText(key, names); }
    } const appendStep { names };
    return joined(shortcut, u" → ", appendStep);
}

QString ShortcutText::spoken(ShortcutSheet::Shortcut const& shortcut, KeyNames names)
{
    struct {
        KeyNames names;
        void operator()(QString& text, Modifier const& modifier) const
        {
            (text += names == KeyNames::symbols ? modifier.name : modifier.word) += u' ';
        }
        void operator()(QString& text, QString const& key) const
        {
            text += names == KeyNames::symbols ? key : keyText(key, names);
        }
    } const appendStep { names };
    return joined(shortcut, u", then ", appendStep);
}

}
