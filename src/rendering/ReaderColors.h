#pragma once

#include <QColor>

// The reader's own palette. Each colour has a light and a dark value; the appearance is chosen when painting.
namespace Quillory::ReaderColors {

enum class Appearance { light, dark };

struct Dynamic {
    QRgb light = 0;
    QRgb dark = 0;

    QColor resolved(Appearance appearance) const
    {
        return QColor::fromRgb(appearance == Appearance::dark ? dark : light);
    }
};

inline constexpr Dynamic chrome { 0xFFF4F3F1, 0xFF2C2D30 };             // bars and sidebar
inline constexpr Dynamic surface { 0xFFFFFFFF, 0xFF232426 };            // under the reading text
inline constexpr Dynamic codeBackground { 0xFFF4F4F5, 0xFF303136 };     // code blocks, copy buttons
inline constexpr Dynamic codeBorder { 0xFFD9D9DC, 0xFF4A4B50 };         // outline of code blocks, thin separators
inline constexpr Dynamic learningBackground { 0xFFF3E9D6, 0xFF4C4230 }; // Learning Mode bar while it is on

inline constexpr Dynamic copied { 0xFF276A30, 0xFFA0D99C };             // tint of what has just been copied

// The parts of a shortcut: its modifiers, and the key.
inline constexpr Dynamic functionKey { 0xFFA12A70, 0xFFF4A4CF };
inline constexpr Dynamic controlKey { 0xFF7A3EB4, 0xFFD4AFFF };
inline constexpr Dynamic optionKey { 0xFF006F75, 0xFF79D8D6 };
inline constexpr Dynamic shiftKey { 0xFF955500, 0xFFFFD38A };
inline constexpr Dynamic commandKey { 0xFF155ABD, 0xFF87BEFF };
inline constexpr Dynamic plainKey { 0xFF276A30, 0xFFA0D99C };

}
