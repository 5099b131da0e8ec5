#include "library/ShortcutText.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

using Modifier = ShortcutText::Modifier;

constexpr std::array<Modifier, 5> modifierTable { {
    { u"function", u"fn" },
    { u"control", u"⌃" },
    { u"option", u"⌥" },
    { u"shift", u"⇧" },
    { u"command", u"⌘" },
} };

constexpr std::array<std::pair<QStringView, QStringView>, 16> keyTable { {
    { u"return", u"↩" },
    { u"enter", u"⌤" },
    { u"tab", u"⇥" },
    { u"escape", u"⎋" },
    { u"space", u"Space" },
    { u"delete", u"⌫" },
    { u"forwardDelete", u"⌦" },
    { u"capsLock", u"⇪" },
    { u"arrowLeft", u"←" },
    { u"arrowRight", u"→" },
    { u"arrowUp", u"↑" },
    { u"arrowDown", u"↓" },
    { u"home", u"↖" },
    { u"end", u"↘" },
    { u"pageUp", u"⇞" },
    { u"pageDown", u"⇟" },
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

QString ShortcutText::keyText(QString const& key)
{
    auto const named = std::ranges::find(keyTable, QStringView(key), &decltype(keyTable)::value_type::first);
    return named == keyTable.end() ? key.toUpper() : named->second.toString();
}

QString ShortcutText::shown(ShortcutSheet::Shortcut const& shortcut)
{
    struct {
        void operator()(QString& text, Modifier const& modifier) const { text += modifier.symbol; }
        void operator()(QString& text, QString const& key) const { text += keyText(key); }
    } appendStep;
    return joined(shortcut, u" → ", appendStep);
}

QString ShortcutText::spoken(ShortcutSheet::Shortcut const& shortcut)
{
    struct {
        void operator()(QString& text, Modifier const& modifier) const { (text += modifier.name) += u' '; }
        void operator()(QString& text, QString const& key) const { text += key; }
    } appendStep;
    return joined(shortcut, u", then ", appendStep);
}

}
