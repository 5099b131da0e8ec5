#include "textlayout/LayoutContext.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>

namespace Quillory {

namespace {

QFont fontOf(FontSet const& fonts, TextAttributes const& attributes)
{
    auto font = fonts.font(attributes.font);
    if (attributes.attachment)
        font.setLetterSpacing(QFont::AbsoluteSpacing, attributes.attachment->width);
    else if (attributes.kern != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, attributes.kern);
    if (attributes.strikethrough)
        font.setStrikeOut(true);
    if (!attributes.link.isEmpty())
        font.setUnderline(true);
    return font;
}

struct LineExtent {
    double height = 0;
    double ascent = 0;
};

// Asked of a line itself, which rounds in its own way, so that what is taken as exact really is.
LineExtent lineExtentOf(QFont const& font)
{
    QTextLayout layout(QStringLiteral("x"), font);
    layout.beginLayout();
    auto line = layout.createLine();
    line.setLeadingIncluded(true);
    line.setLineWidth(LayoutContext::unlimitedWidth);
    layout.endLayout();
    return { line.height(), line.ascent() };
}

// Of running text, with some room for what wrapping leaves free at the ends of lines.
double averageWidthOf(QFontMetricsF const& metrics)
{
    auto const sample = QStringLiteral("What is told in a sheet, and how often which letter comes.");
    return metrics.horizontalAdvance(sample) / static_cast<double>(sample.size()) * 1.04;
}

std::array<float, 95> asciiWidthsOf(QFontMetricsF const& metrics, double kern)
{
    std::array<float, 95> widths {};
    for (std::size_t index = 0; index < widths.size(); ++index)
        widths[index] = static_cast<float>(
            metrics.horizontalAdvance(QChar(static_cast<char16_t>(u' ' + index))) + kern);
    return widths;
}

}

LayoutContext::LayoutContext(AttributedText const& text, FontSet fonts, ColorSet colors)
    : m_text(text.withWholeParagraphs())
    , m_fonts(std::move(fonts))
    , m_colors(colors)
{
}

void LayoutContext::setColors(ColorSet const& colors)
{
    m_colors = colors;
    for (auto& look : m_looks)
        look.format.reset();
}

LayoutContext::Look& LayoutContext::look(AttributedText::Run const& run) const
{
    if (m_lookOfRun.size() <= run.index)
        m_lookOfRun.resize(run.index + 1);
    auto*& known = m_lookOfRun[run.index];
    if (!known)
        known = lookOf(m_text.attributes(run));
    return *known;
}

LayoutContext::Look* LayoutContext::lookOf(TextAttributes attributes) const
{
    if (!attributes.link.isEmpty())
        attributes.link = QStringLiteral("anywhere");
    auto*& known = m_lookOfAttributes[attributes];
    if (!known)
        known = &m_looks.emplace_back(Look { .metrics = makeMetrics(attributes), .format = {}, .letterWidths = {} });
    return known;
}

LayoutContext::Metrics const& LayoutContext::metrics(AttributedText::Run const& run) const
{
    return look(run).metrics;
}

LayoutContext::Metrics LayoutContext::makeMetrics(TextAttributes const& attributes) const
{
    auto const font = fontOf(m_fonts, attributes);
    QFontMetricsF const metrics(font);
    auto const extent = lineExtentOf(font);
    return {
        .font = font,
        .lineHeight = extent.height,
        .ascent = extent.ascent,
        .capHeight = metrics.capHeight(),
        .averageWidth = std::max(1.0, averageWidthOf(metrics) + attributes.kern),
        .asciiWidths = asciiWidthsOf(metrics, attributes.kern),
        .plain = !attributes.background && !attributes.attachment && attributes.baselineOffset == 0,
    };
}

double LayoutContext::letterWidth(AttributedText::Run const& run, QStringView letter) const
{
    if (auto const& attachment = m_text.attributes(run).attachment)
        return attachment->width;
    auto const isPair = letter.size() == 2;
    auto const code = isPair ? QChar::surrogateToUcs4(letter[0], letter[1]) : char32_t(letter[0].unicode());
    auto& widths = look(run).letterWidths;
    auto const known = widths.constFind(code);
    if (known != widths.cend())
        return *known;
    return *widths.insert(code, QFontMetricsF(metrics(run).font).horizontalAdvance(letter.toString()));
}

QTextCharFormat const& LayoutContext::format(AttributedText::Run const& run) const
{
    auto& format = look(run).format;
    if (!format)
        format = makeFormat(m_text.attributes(run));
    return *format;
}

QColor LayoutContext::foreground(TextAttributes const& attributes) const
{
    return attributes.link.isEmpty() ? m_colors.resolved(attributes.color) : m_colors.link;
}

QTextCharFormat LayoutContext::makeFormat(TextAttributes const& attributes) const
{
    QTextCharFormat format;
    format.setFont(fontOf(m_fonts, attributes));
    format.setForeground(foreground(attributes));
    if (attributes.background && attributes.keycap == 0)
        format.setBackground(m_colors.resolved(*attributes.background));
    // Qt takes the offset as a share of the font's height, in percent.
    if (attributes.baselineOffset != 0 && !attributes.attachment)
        format.setBaselineOffset(
            attributes.baselineOffset * 100 / std::max(1.0, QFontMetricsF(format.font()).height()));
    return format;
}

}
