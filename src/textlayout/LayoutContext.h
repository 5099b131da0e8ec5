#pragma once

#include "rendering/AttributedText.h"
#include "text/TextRange.h"
#include "textlayout/ColorSet.h"
#include "textlayout/FontSet.h"

#include <QHash>
#include <QTextCharFormat>

#include <array>
#include <deque>
#include <optional>
#include <vector>

namespace Quillory {

// Shared by all parts of one layout: the text, the fonts, the colours, and what is worth making once for each set of
// attributes. Outlives every part.
class LayoutContext {
public:
    // Pairs of letters may stand further apart than their widths say: share of the text's width, and points on top.
    static constexpr double kerningShare = 1.02;
    static constexpr double kerningSlack = 1;
    static constexpr double unlimitedWidth = 1e6; // points, at which no line wraps

    // Known of the characters of a run without laying them out.
    struct Metrics {
        QFont font; // with kerning and underlines
        double lineHeight = 0;
        double ascent = 0;
        double capHeight = 0;
        double averageWidth = 0;
        std::array<float, 95> asciiWidths {}; // from blank to tilde
        // Font and colour are all that these attributes have, so that a single run needs no formats.
        bool plain = true;
    };

    LayoutContext(AttributedText const& text, FontSet fonts, ColorSet colors);

    AttributedText const& text() const { return m_text; }
    FontSet const& fonts() const { return m_fonts; }
    ColorSet const& colors() const { return m_colors; }
    void setColors(ColorSet const& colors);

    Metrics const& metrics(AttributedText::Run const& run) const;
    // Of one character, a pair of surrogates perhaps, that stands alone in the run's font.
    double letterWidth(AttributedText::Run const& run, QStringView letter) const;
    QTextCharFormat const& format(AttributedText::Run const& run) const;
    QColor foreground(TextAttributes const& attributes) const;

private:
    // Shared by all runs that look the same: those of a thousand links differ only in where they lead.
    struct Look {
        Metrics metrics;
        std::optional<QTextCharFormat> format;
        QHash<char32_t, double> letterWidths;
    };

    Look& look(AttributedText::Run const& run) const;
    Look* lookOf(TextAttributes attributes) const;
    Metrics makeMetrics(TextAttributes const& attributes) const;
    QTextCharFormat makeFormat(TextAttributes const& attributes) const;

    AttributedText m_text;
    FontSet m_fonts;
    ColorSet m_colors;
    mutable std::deque<Look> m_looks; // references into it stay valid when it grows
    mutable QHash<TextAttributes, Look*> m_lookOfAttributes;
    mutable std::vector<Look*> m_lookOfRun; // by the run's index
};

}
