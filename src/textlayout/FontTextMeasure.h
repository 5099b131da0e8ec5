#pragma once

#include "rendering/TextMeasure.h"
#include "textlayout/FontSet.h"

#include <QFontMetricsF>
#include <QHash>

#include <deque>

namespace Quillory {

// Measures text in the faces that it will be drawn in, and remembers all of it: meant for one sheet. GUI thread only.
class FontTextMeasure final : public TextMeasure {
public:
    explicit FontTextMeasure(FontSet fonts);

    double width(QStringView text, FontAttribute const& font) const override;

private:
    struct Face {
        FontAttribute font;
        QFontMetricsF metrics;
        QHash<QString, double> widths;
    };

    Face& face(FontAttribute const& font) const;

    FontSet m_fonts;
    mutable std::deque<Face> m_faces;
};

}
