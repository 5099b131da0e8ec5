#include "reader/ReaderStyle.h"

#include "reader/WindowColors.h"

#include <QFont>
#include <QFontInfo>
#include <QPalette>

#include <algorithm>

namespace Quillory {

namespace {

constexpr double headingShare = 0.85; // of the desktop's font, as the next
constexpr double largeShare = 1.5;
constexpr double aboveText = 6; // points of the header's title over the text

// %1 chrome, %2 surface, %3 separator, %4 outline, %5 label, %6 secondary, %7 focus, %8 learning, %9 warning
auto const colorRules = QStringLiteral(
    "#chrome, #chrome QListView { background: %1; }"
    "#surface { background: %2; }"
    "#separator { background: %3; }"
    "#reader { border: 1px solid %4; }"
    "QLabel, QToolButton { color: %5; }"
    "QLabel#secondary, QLabel#heading { color: %6; }"
    "#learningModeExplanation { background: %1; }"
    "#learningModeExplanation[isOn=\"true\"] { background: %8; }"
    "QLabel#caption, QLabel#iconWarnings { color: %9; }"
    "#box { background: %1; border: 1px solid %3; border-radius: 6px; }"
    "#card { background: %2; border: 1px solid %4; border-radius: 8px; }"
    "#card QScrollArea, #cardRows { background: transparent; border: none; }"
    "QMenu { color: %5; background: %2; border: 1px solid %4; padding: 4px; }"
    "QMenu::item { padding: 5px 24px; border-radius: 4px; }"
    "QMenu::item:selected { background: palette(highlight); color: palette(highlighted-text); }"
    "QMenu::item:disabled { color: %6; background: transparent; }"
    "QMenu::separator { height: 1px; margin: 4px 8px; background: %3; }"
    "QLineEdit { color: %5; background: %2; border: 1px solid %4; border-radius: 6px; padding: 3px 6px; }"
    "QLineEdit:focus { border: 2px solid %7; padding: 2px 5px; }"
    "QSlider { border: 2px solid transparent; border-radius: 6px; padding: 6px 2px; }"
    "QSlider:focus { border: 2px solid %7; }"
    "QSlider::groove { height: 4px; border-radius: 2px; background: %4; }"
    "QSlider::sub-page { border-radius: 2px; background: %7; }"
    "QSlider::handle { width: 14px; margin: -5px 0; border-radius: 7px; background: %7; }"
    "#chrome QListView { border: none; outline: none; }"
    "QScrollBar { border: none; background: transparent; margin: 0; }"
    "QScrollBar:vertical { width: 10px; }"
    "QScrollBar:horizontal { height: 10px; }"
    "QScrollBar::handle { background: %4; border-radius: 3px; margin: 2px; }"
    "QScrollBar::handle:disabled { background: transparent; }"
    "QScrollBar::handle:vertical { min-height: 28px; }"
    "QScrollBar::handle:horizontal { min-width: 28px; }"
    "QAbstractScrollArea::corner { background: transparent; border: none; }"
    "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }");

// %1 heading, %2 large
auto const fontRules = QStringLiteral("#heading { font-size: %1px; font-weight: 600; }"
                                      "#sectionTitle { font-weight: 600; }"
                                      "#large { font-size: %2px; font-weight: 600; }");

}

QString ReaderStyle::sheet(QPalette const& palette, QFont const& font)
{
    auto const colors = WindowColors::fromPalette(palette);
    auto const size = QFontInfo(font).pixelSize();
    return colorRules.arg(colors.chrome.name(), colors.surface.name(), colors.separator.name(), colors.outline.name(),
               colors.label.name(), colors.secondary.name(), colors.focus.name(), colors.learning.name(),
               colors.warning.name())
        + fontRules.arg(qRound(size * headingShare)).arg(qRound(size * largeShare));
}

QFont ReaderStyle::titleFont(QFont const& desktop, double textSize)
{
    auto font = desktop;
    font.setPixelSize(qRound(std::max(largeShare * QFontInfo(desktop).pixelSize(), textSize + aboveText)));
    font.setWeight(QFont::DemiBold);
    return font;
}

}
