#pragma once

#include <QRect>

#include <optional>

// Where the settings window comes up.
namespace Quillory::SettingsPlace {

inline constexpr QSize defaultSize { 560, 720 };
inline constexpr QSize minimumSize { 340, 260 };

// No larger than `visible`, the part of the screen that is free, and beside the reader where that leaves room on one
// side of it; else in the middle.
QRect frame(QSize wanted, QRect visible, std::optional<QRect> const& reader);

}
