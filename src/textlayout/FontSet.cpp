#include "textlayout/FontSet.h"

#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>

namespace Quillory {

FontSet FontSet::ofDesktop()
{
    return { QGuiApplication::font().family(), QFontDatabase::systemFont(QFontDatabase::FixedFont).family() };
}

FontSet::FontSet(QString systemFamily, QString monospacedFamily)
    : m_systemFamily(std::move(systemFamily))
    , m_monospacedFamily(std::move(monospacedFamily))
{
}

QFont FontSet::font(FontAttribute const& attribute) const
{
    auto const monospaced = attribute.family == FontAttribute::Family::monospaced;
    QFont font(monospaced ? m_monospacedFamily : m_systemFamily);
    if (monospaced)
        font.setStyleHint(QFont::Monospace);
    font.setPixelSize(std::clamp(qRound(attribute.size), 1, 1000));
    font.setWeight(static_cast<QFont::Weight>(attribute.weight));
    font.setItalic(attribute.italic);
    return font;
}

}
