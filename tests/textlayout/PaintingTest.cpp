#include "support/GoldenSheets.h"
#include "support/Ink.h"
#include "support/Test.h"
#include "textlayout/TestTexts.h"

#include <QRegion>

#include <map>

namespace Quillory {
namespace {

constexpr double width = 500;

ColorSet distinctColors(ReaderColors::Appearance appearance)
{
    return { .label = QColor(0xD0, 0x00, 0x00),
        .secondaryLabel = QColor(0x00, 0x90, 0x00),
        .quaternaryLabel = QColor(0x80, 0x60, 0x00),
        .separator = QColor(0x00, 0x00, 0xFF, 0x80),
        .link = QColor(0xC0, 0x00, 0xC0),
        .appearance = appearance };
}

// Where a table's columns and rows begin, and where it ends.
struct Table {
    std::map<std::pair<int, int>, TableBlock> cells; // by row and column
    std::map<int, double> columns, rows;
    double right = 0, bottom = 0;
};

// A text as it ought to be painted, from where the layout says that its letters stand.
class PaintedText {
public:
    PaintedText(AttributedText const& text, ReaderColors::Appearance appearance, double scale)
        : m_colors(distinctColors(appearance))
        , m_scale(scale)
        , m_layout(layoutOf(text, width)) // in colours that others take the place of
    {
        makeAllExact(m_layout);
        readTables();
    }

    QRectF all() const { return { 0, 0, m_layout.usedWidth() + 1, std::ceil(m_layout.height()) + 1 }; }

    QImage painted(QRectF const& visible)
    {
        auto image = empty();
        m_layout.layOutVisible(visible.top(), visible.height());
        QPainter painter(&image);
        m_layout.paint(painter, visible, m_colors);
        return image;
    }

    void expectInkWhereTheLayoutSays()
    {
        auto const image = painted(all());
        Ink ink(image, backdrop());
        auto const& text = m_layout.text();
        for (auto const run : text.runs()) {
            for (TextRange piece { run.location, 0 }; piece.location < run.end(); piece.location = piece.end()) {
                auto const line = m_layout.lineRange(piece.location);
                piece.length = std::max<qsizetype>(std::min(line.end(), run.end()) - piece.location, 1);
                expectPiece(ink, text.attributes(run), piece);
            }
        }
        EXPECT_EQ(ink.leftOver(), "");
    }

    void expectPartsToLookLikeTheWhole()
    {
        auto const whole = painted(all());
        auto const bare = empty();
        for (double top = 0; top < all().height(); top += all().height() / 4) {
            QRectF const part(std::fmod(top, 200), std::round(top), 210, std::ceil(all().height() / 4));
            auto const image = painted(part);
            auto const isAsIn = [&](QImage const& expected, QRectF const& area) {
                auto const shown = area & all();
                auto const pixels = QRectF(shown.topLeft() * m_scale, shown.size() * m_scale).toAlignedRect();
                return shown.isEmpty() || image.copy(pixels) == expected.copy(pixels);
            };
            EXPECT_TRUE(isAsIn(whole, part)) << "from " << top;
            // What is out of sight costs nothing, but for the lines and rows that begin or end in sight.
            constexpr double margin = 80;
            EXPECT_TRUE(isAsIn(bare, { 0, -margin, all().width(), part.top() })) << "from " << top;
            EXPECT_TRUE(isAsIn(bare, { 0, part.bottom() + margin, all().width(), all().height() })) << "from " << top;
        }
    }

    void expectSelectionToCoverItsLetters()
    {
        m_layout.layOutVisible(0, m_layout.height());
        auto const& text = m_layout.text();
        TextRange const selected { text.length() / 4, text.length() / 2 };
        auto const covered = m_layout.selectionRects(selected, all());
        for (qsizetype place = 0; place < text.length(); ++place) {
            auto const box = m_layout.boundingRect(place, 1);
            auto const line = m_layout.lineRange(place);
            // Where directions meet, boxes of letters overlap, and a tab has none that is its own.
            auto const isAmbiguous = QStringView(text.string()).sliced(line.location, line.length).isRightToLeft()
                || text.string()[place] == u'\t';
            if (box.width() < 2 || isAmbiguous)
                continue;
            auto const isCovered = std::ranges::any_of(
                covered, [&](auto const& rect) { return rect.contains(box.center()); });
            ASSERT_EQ(isCovered, selected.contains(place)) << place;
        }
    }

private:
    QColor surface() const { return ReaderColors::surface.resolved(m_colors.appearance); }
    QImage empty() const
    {
        QImage image((all().size() * m_scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(m_scale);
        image.fill(surface());
        return image;
    }

    void readTables()
    {
        auto const& text = m_layout.text();
        m_layout.layOutVisible(0, m_layout.height());
        for (auto const run : text.paragraphRuns()) {
            auto const& style = text.paragraphStyle(run);
            if (!style.block)
                continue;
            auto const& block = *style.block;
            auto const isFixed = block.widths == TableBlock::Widths::fixed;
            auto const [number, row, column] = text.tableCell(run);
            auto& table = m_tables[number];
            if (table.cells.emplace(std::pair(row, column), block).second)
                table.rows[row] = m_layout.boundingRect(run.location, 1).top() - roomAbove(style);
            auto& left = table.columns.try_emplace(column, all().width()).first->second;
            // With its line feeds a selected cell is covered to its edges.
            for (auto const& covered : m_layout.selectionRects({ run.location, run.length }, all())) {
                left = std::min(left, covered.left() - block.padding - block.borderWidth);
                table.right = std::max(table.right, covered.right() + block.padding);
            }
            if (isFixed)
                left = column * block.widthPercent / 100 * width;
            auto const next = static_cast<std::size_t>(text.paragraphRunAt(run.end()));
            auto const end = run.end() < text.length()
                ? m_layout.boundingRect(run.end(), 1).top() - roomAbove(text.paragraphStyle(text.paragraphRuns()[next]))
                : m_layout.height();
            table.bottom = end - (isFixed ? 0 : block.borderWidth);
        }
    }
    static double roomAbove(ParagraphStyle const& style)
    {
        auto const isFixed = style.block && style.block->widths == TableBlock::Widths::fixed;
        return style.paragraphSpacingBefore
            + (style.block ? style.block->padding + (isFixed ? 0 : style.block->borderWidth) : 0);
    }

    // In pixels of the device, since lines begin on one and are at least one wide.
    int edge(double position) const { return static_cast<int>(std::floor(position * m_scale + 0.01)); }

    // Everything but letters and pictures: the surface, the cells' backgrounds, and every table line once.
    QImage backdrop() const
    {
        auto image = empty();
        QRegion lines;
        QColor lineColor;
        image.setDevicePixelRatio(1);
        QPainter painter(&image);
        auto const next = [](std::map<int, double> const& starts, int index, double end) {
            auto const after = starts.upper_bound(index);
            return after == starts.end() ? end : after->second;
        };
        for (auto const& [number, table] : m_tables) {
            for (auto const& [place, block] : table.cells) {
                auto const [row, column] = place;
                auto const thickness = std::max(1, qRound(block.borderWidth * m_scale));
                QRect const box(QPoint(edge(table.columns.at(column)), edge(table.rows.at(row))),
                    QPoint(edge(next(table.columns, column, table.right)), edge(next(table.rows, row, table.bottom))));
                auto const isGrid = block.border == TableBlock::Border::allEdges;
                if (block.background)
                    painter.fillRect(box.adjusted(thickness, thickness, -1, -1), m_colors.resolved(*block.background));
                lineColor = m_colors.resolved(block.borderColor);
                QSize const across(box.width() - 1 + thickness, thickness);
                QSize const down(thickness, box.height() - 1 + (isGrid ? thickness : 0));
                if (block.border != TableBlock::Border::none)
                    lines += QRect(box.topLeft(), down);
                if (isGrid)
                    lines += QRegion(QRect(box.topLeft(), across)) + QRect(box.bottomLeft(), across)
                        + QRect(box.topRight(), down);
            }
        }
        for (auto const& line : lines)
            painter.fillRect(line, lineColor);
        painter.end();
        image.setDevicePixelRatio(m_scale);
        return image;
    }

    void expectPiece(Ink& ink, TextAttributes const& attributes, TextRange const& piece)
    {
        auto const letters = QStringView(m_layout.text().string()).sliced(piece.location, piece.length);
        auto const visible = letters.trimmed();
        auto const box = m_layout.boundingRect(piece.location, piece.length);
        if (attributes.attachment) {
            auto const* const symbol = std::get_if<Symbol>(&attributes.attachment->picture);
            auto const color = symbol ? m_colors.resolved(symbol->color) : QColor(GoldenSheets::pictureColor);
            EXPECT_GT(ink.account(box, color).strongest, 0.5) << "picture at " << piece.location;
            EXPECT_NEAR(box.width(), attributes.attachment->width * double(piece.length), 0.1);
            EXPECT_GE(box.height(), attributes.attachment->height);
            return;
        }
        if (std::ranges::any_of(letters, [](QChar letter) { return letter.isSurrogate(); }))
            return ink.ignore(box.adjusted(-2, -2, 2, 2));
        auto const color = attributes.link.isEmpty() ? m_colors.resolved(attributes.color) : m_colors.link;
        std::optional<QColor> ground;
        if (attributes.background)
            ground = m_colors.resolved(*attributes.background);
        if (attributes.keycap > 0) {
            auto const border = ReaderColors::codeBorder.resolved(m_colors.appearance);
            EXPECT_GT(ink.account(box, border, ground, attributes.keycap + 1).strongest, 0.9) << "keycap";
        }
        auto const found = ink.account(box, color, ground);
        auto const what = visible.toString().toStdString() + " at " + std::to_string(piece.location);
        if (visible.isEmpty() || color.alpha() == 0)
            return;
        EXPECT_GT(found.strongest, 0.5) << what;
        EXPECT_TRUE(found.ground || !ground) << what;
        auto const hasLine = attributes.strikethrough || !attributes.link.isEmpty();
        EXPECT_TRUE(hasLine ? found.columns > 0.75 : ground || !visible.contains(u' ') || found.columns < 1)
            << "the line of " << what;
    }

    ColorSet m_colors;
    double m_scale;
    TextLayout m_layout;
    std::map<int, Table> m_tables;
};

TEST(Painting, Ink_is_where_the_layout_says_in_its_roles_colour_and_nowhere_else)
{
    for (auto const& name : GoldenSheets::names()) {
        auto const text = GoldenSheets::rendered(name, width).text;
        for (auto const appearance : { ReaderColors::Appearance::light, ReaderColors::Appearance::dark }) {
            for (auto const scale : { 1.0, 2.0 }) {
                SCOPED_TRACE(name.toStdString() + (appearance == ReaderColors::Appearance::dark ? " dark" : " light")
                    + (scale > 1 ? " at 2" : " at 1"));
                PaintedText painted(text, appearance, scale);
                painted.expectInkWhereTheLayoutSays();
                painted.expectPartsToLookLikeTheWhole();
                painted.expectSelectionToCoverItsLetters();
            }
        }
    }
}

TextAttributes const key { .font = { .family = FontAttribute::Family::monospaced, .size = 18 },
    .background = Color { ColorRole::codeBackground },
    .keycap = 5,
    .kern = 5 };

TEST(Painting, A_shortcut_reads_from_left_to_right_and_keeps_its_widths_in_any_text)
{
    std::map<QChar, std::vector<double>> widths;
    for (auto const& title : { u"save "_s, u"שמור "_s }) {
        AttributedText::Builder builder;
        builder.append(title, {}, {});
        for (auto const& step : { u"⌃⇧K"_s, u"⌘⇞"_s }) {
            builder.append(step, key, {});
            builder.append(u" → "_s, {}, {});
        }
        auto layout = layoutOf(std::move(builder).build(), 500);
        double reached = -1;
        for (auto const letter : u"⌃⇧K⌘⇞"_s) {
            auto const box = layout.boundingRect(layout.text().string().indexOf(letter), 1);
            EXPECT_GE(box.left(), reached - 0.1) << QString(letter).toStdString() << " after " << title.toStdString();
            reached = box.right();
            widths[letter].push_back(box.width());
        }
    }
    for (auto const& [letter, both] : widths)
        EXPECT_NEAR(both[0], both[1], 0.1) << QString(letter).toStdString();
}

TEST(Painting, Keys_can_be_told_apart_in_small_text)
{
    std::map<QChar, QImage> pictures;
    for (auto const letter : u"⌃^⌥⇧⇪⌘↩⌤⇥⎋⌫⌦←→↑↓↖↘⇞⇟"_s) {
        auto& picture = pictures[letter] = QImage(30, 30, QImage::Format_Grayscale8);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        auto layout = layoutOf(plainText(letter, {}, key), 100);
        layout.layOutVisible(0, 30);
        painter.translate(8, 0);
        layout.paint(painter, { 0, 0, 30, 30 }, distinctColors(ReaderColors::Appearance::light));
        for (auto const& [other, known] : pictures) {
            int differing = 0;
            for (int pixel = 0; pixel < 900; ++pixel)
                differing += std::abs(
                                 picture.scanLine(pixel / 30)[pixel % 30] - known.constScanLine(pixel / 30)[pixel % 30])
                    > 64;
            EXPECT_TRUE(other == letter || differing > 12) << (QString(other) + letter).toStdString();
        }
    }
}

}
}
