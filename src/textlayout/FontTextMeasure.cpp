#include "textlayout/FontTextMeasure.h"

#include <algorithm>

namespace Quillory {

FontTextMeasure::FontTextMeasure(FontSet fonts)
    : m_fonts(std::move(fonts))
{
}

double FontTextMeasure::width(QStringView text, FontAttribute const& font) const
{
    auto& known = face(font);
    // A key that refers to the caller's characters, for the look-up alone.
    auto const key = QString::fromRawData(text.data(), text.size());
    if (auto const found = known.widths.constFind(key); found != known.widths.cend())
        return *found;
    return *known.widths.insert(text.toString(), known.metrics.horizontalAdvance(key));
}

FontTextMeasure::Face& FontTextMeasure::face(FontAttribute const& font) const
{
    auto const known = std::ranges::find(m_faces, font, &Face::font);
    if (known != m_faces.end())
        return *known;
    return m_faces.emplace_back(font, QFontMetricsF(m_fonts.font(font)), QHash<QString, double> {});
}

}
