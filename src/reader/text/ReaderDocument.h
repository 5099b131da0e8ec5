#pragma once

#include "library/PreparedImage.h"
#include "library/ShortcutSheet.h"
#include "rendering/PreparedShortcuts.h"
#include "rendering/RenderedMarkdown.h"
#include "text/FoldedText.h"
#include "textlayout/TextLayout.h"

#include <optional>
#include <utility>
#include <vector>

namespace Quillory {

// A sheet's text as a view shows it, with what the view makes of it: heights, and the copy that find looks through. Fits
// itself to the width that the view has. Costs little but these when nothing of it is on screen, so that it can be kept
// between shows. Places are points of the text, positions UTF-16 units.
class ReaderDocument {
public:
    // A structured sheet, which is rendered for each width.
    struct Shortcuts {
        ShortcutSheet sheet;
        QMap<QString, PreparedImage> images; // by the icon as written
        double textSize = 0; // points
        KeyNames keyNames = KeyNames::symbols;
    };

    // Code is laid out no narrower in any window, in points: a command of usual length stays in one line, and scrolls.
    static constexpr double smallestCodeWidth = 330;

    // How far a change of width or fonts went.
    enum class Change { none, laidOut, rendered };

    // Text that is rendered once, with code laid out no narrower than `minimumCodeWidth`. `width` is what the view has.
    ReaderDocument(
        RenderedMarkdown rendered, double minimumCodeWidth, double width, FontSet fonts, ColorSet const& colors);
    ReaderDocument(Shortcuts shortcuts, double width, FontSet const& fonts, ColorSet const& colors);

    bool fits(double width) const { return widthsFor(width) == m_layout.widths(); }
    // Take the anchor of the top line before, and ask for its position after.
    Change fit(double width, ColorSet const& colors);
    void setFonts(FontSet const& fonts, ColorSet const& colors);
    // Nothing of it is on screen any more.
    void leave();

    RenderedMarkdown const& rendered() const { return m_rendered; }
    TextLayout& layout() { return m_layout; }
    TextLayout const& layout() const { return m_layout; }
    FoldedText& folded() { return m_folded; }

    CopyTarget target(qsizetype index) const { return m_rendered.copyTargets[static_cast<std::size_t>(index)]; }
    qsizetype targetCount() const { return std::ssize(m_rendered.copyTargets); }
    // The first target that holds the character.
    std::optional<qsizetype> targetAt(qsizetype character) const;
    // The positions of the block targets, in the order of the text.
    std::vector<qsizetype> const& blocks() const { return m_blocks; }
    // The positions in blocks() of those that meet the range, as first and one past the last.
    std::pair<std::size_t, std::size_t> blocksIn(TextRange range) const;

    // The character whose box holds the point, with a little room around it for a hand that is not exact.
    std::optional<qsizetype> characterUnder(QPointF point) const;
    // The place between characters that is nearest to the point.
    qsizetype insertionIndexAt(QPointF point) const;
    // Empty where there is none.
    QString linkAt(QPointF point) const;
    QString linkOf(qsizetype character) const;

private:
    TextWidths widthsFor(double width) const;
    RenderedMarkdown renderedFor(double width, FontSet const& fonts);
    void layOutAnew(TextWidths const& widths, FontSet const& fonts, ColorSet const& colors);
    void takeStock();

    double m_minimumCodeWidth;
    std::optional<Shortcuts> m_shortcuts;
    std::optional<PreparedShortcuts> m_prepared; // for m_layout's fonts; made when the first width asks for it
    RenderedMarkdown m_rendered;
    std::vector<qsizetype> m_blocks;
    TextLayout m_layout;
    FoldedText m_folded;
};

}
