#pragma once

#include <QStringList>

#include <cstdint>
#include <map>
#include <ranges>
#include <vector>

namespace Quillory {

// Plays a script such as "ctrl+alt+K" or "ctrl+alt↓ J↓ J↑ ctrl+alt↑" on whatever presses and releases keys by virtual
// key code. Keys go down from left to right and up from right to left; without an arrow they do both.
template<typename Keyboard>
void play(Keyboard& keyboard, QString const& script)
{
    static std::map<QString, std::uint16_t> const codes { { QStringLiteral("ctrl"), 59 }, { QStringLiteral("alt"), 58 },
        { QStringLiteral("rightAlt"), 61 }, { QStringLiteral("shift"), 56 }, { QStringLiteral("rightShift"), 60 },
        { QStringLiteral("super"), 55 }, { QStringLiteral("A"), 0 }, { QStringLiteral("C"), 8 },
        { QStringLiteral("J"), 38 }, { QStringLiteral("K"), 40 }, { QStringLiteral("Q"), 12 },
        { QStringLiteral("V"), 9 }, { QStringLiteral("Return"), 36 }, { QStringLiteral("Escape"), 53 },
        { QStringLiteral("Left"), 123 }, { QStringLiteral("Right"), 124 }, { QStringLiteral("Up"), 126 },
        { QStringLiteral("Down"), 125 } };
    for (auto chord : script.split(u' ')) {
        bool const isDown = chord.endsWith(u'↓'), isUp = chord.endsWith(u'↑');
        if (isDown || isUp)
            chord.chop(1);
        std::vector<std::uint16_t> keys;
        for (auto const& name : chord.split(u'+'))
            keys.push_back(codes.at(name));
        for (auto const key : isUp ? std::vector<std::uint16_t>() : keys)
            keyboard.press(key);
        for (auto const key : (isDown ? std::vector<std::uint16_t>() : keys) | std::views::reverse)
            keyboard.release(key);
    }
}

}
