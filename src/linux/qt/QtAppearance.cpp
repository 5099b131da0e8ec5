#include "linux/qt/QtAppearance.h"

#include <QApplication>
#include <QPalette>

#include <utility>

namespace Quillory {

namespace {

constexpr float placeholderShare = 0.6F;

bool isDark(QPalette const& palette)
{
    return palette.color(QPalette::Text).lightnessF() > palette.color(QPalette::Base).lightnessF();
}

// All that the two colours do not imply.
QPalette made(QRgb button, QRgb window, QRgb base, QRgb text, QRgb link)
{
    QPalette palette { QColor(button), QColor(window) };
    for (auto const group : { QPalette::Active, QPalette::Inactive }) {
        for (auto const role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText })
            palette.setColor(group, role, text);
    }
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::Link, link);
    palette.setColor(QPalette::LinkVisited, link);
    auto placeholder = QColor(text);
    placeholder.setAlphaF(placeholderShare);
    palette.setColor(QPalette::PlaceholderText, placeholder);
    return palette;
}

}

void wear(PreferredAppearance preferred)
{
    static bool isOurs = false;
    if (std::exchange(isOurs, false))
        QApplication::setPalette({}); // the desktop's again
    auto const desktops = QApplication::palette();
    bool const wantsDark = preferred == PreferredAppearance::dark;
    if (preferred == PreferredAppearance::none || wantsDark == isDark(desktops))
        return;
    auto palette = wantsDark ? made(0xFF3A3A3C, 0xFF2B2B2D, 0xFF1E1E20, 0xFFECECEC, 0xFF6CB2FF)
                             : made(0xFFEFEFEF, 0xFFF4F3F2, 0xFFFFFFFF, 0xFF101010, 0xFF0A5CC2);
    palette.setColor(QPalette::Highlight, desktops.color(QPalette::Highlight));
    palette.setColor(QPalette::HighlightedText, desktops.color(QPalette::HighlightedText));
    QApplication::setPalette(palette);
    isOurs = true;
}

}
