#include "reader/text/ReaderTextViewFixture.h"
#include "support/GoldenSheets.h"

#include <QPainter>

namespace Quillory {
namespace {

using Appearance = ReaderColors::Appearance;

class ReaderPaintingTest : public ReaderTextViewTest {
protected:
    static constexpr double buttonRoom = 68;

    void setPalette(Appearance appearance, QColor const& highlight)
    {
        auto const isDark = appearance == Appearance::dark;
        QPalette palette;
        palette.setColor(QPalette::Text, isDark ? QColor(0xFF, 0xA0, 0xA0) : QColor(0xB0, 0, 0));
        palette.setColor(QPalette::Base, isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::Highlight, highlight);
        view.setPalette(palette);
        EXPECT_EQ(view.colors().appearance, appearance);
    }
    QColor color(ReaderColors::Dynamic dynamic) const { return dynamic.resolved(view.colors().appearance); }

    QImage empty(double scale) const
    {
        QImage image(view.size() * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(color(ReaderColors::surface));
        return image;
    }
    QImage shot(double scale, QRect const& part = {})
    {
        auto image = empty(scale);
        view.render(&image, part.topLeft(), part.isNull() ? QRegion(view.rect()) : QRegion(part));
        return image;
    }

    std::vector<QRectF> blocks() const
    {
        std::vector<QRectF> rectangles;
        for (auto const target : view.blockTargets())
            rectangles.push_back(view.blockRectangle(target).translated(-origin()));
        return rectangles;
    }
    QPointF origin() const { return view.scrollOrigin().toPoint(); } // on whole pixels of the view

    // What the text's own layout paints, washed where it is selected, between blocks with plain corners and buttons.
    QImage expected(double scale, QColor const& wash)
    {
        auto image = empty(scale);
        TextLayout layout(view.rendered().text, view.textWidths(), view.fonts(), view.colors());
        while (layout.makeSomeExact(0, 1s).moreLeft) { }
        QPointF const corner(ReaderTextView::inset, ReaderTextView::inset);
        QRectF const visible(origin() - corner, view.size());
        layout.layOutVisible(visible.top(), visible.height());
        QPainter painter(&image);
        for (auto const& block : blocks())
            painter.fillRect(block, color(ReaderColors::codeBackground));
        painter.translate(-visible.topLeft());
        layout.paint(painter, visible, view.colors());
        auto const isDark = view.colors().appearance == Appearance::dark;
        painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen : QPainter::CompositionMode_Multiply);
        for (auto const& covered : layout.selectionRects(view.selection().range(), visible))
            painter.fillRect(covered, wash);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.translate(visible.topLeft());
        for (auto const& block : blocks()) {
            auto const surface = color(ReaderColors::surface);
            painter.fillRect(QRectF(0, block.top(), block.left(), block.height()), surface);
            painter.fillRect(block.adjusted(block.width(), 0, view.width(), 0), surface);
            painter.fillRect(block.adjusted(block.width() - buttonRoom, 0, 0, 0), color(ReaderColors::codeBackground));
        }
        painter.end();
        for (auto* const button : view.codeButtons())
            button->render(&image, button->pos());
        return image;
    }

    // Round at its corners and outlined between them.
    void expectRoundOutline(QImage const& image, QRectF const& block) const
    {
        auto const expectAt = [&](QPointF point, bool isCorner) {
            auto const pixel = image.pixelColor((point * image.devicePixelRatio()).toPoint());
            if (!view.rect().contains(point.toPoint()))
                return;
            EXPECT_EQ(pixel == color(ReaderColors::surface), isCorner) << point.x() << ", " << point.y();
            EXPECT_NE(pixel, color(ReaderColors::codeBackground)) << point.x() << ", " << point.y();
        };
        auto const last = block.bottomRight() - QPointF(1, 1);
        for (auto const& corner :
            { block.topLeft(), QPointF(last.x(), block.top()), QPointF(block.left(), last.y()), last })
            expectAt(corner, true);
        for (auto const& edge : { QPointF(block.center().x(), std::floor(block.top())),
                 QPointF(block.center().x(), std::floor(block.bottom())), QPointF(block.left(), block.center().y()),
                 QPointF(block.right(), block.center().y()) })
            expectAt(edge, false);
    }
    static void takeEdgesOut(QImage& image, QRectF const& block)
    {
        QPainter painter(&image);
        for (auto const& edge :
            QRegion(block.adjusted(-1, -1, 1, 1).toAlignedRect()) - block.adjusted(6, 6, -6, -6).toRect())
            painter.fillRect(edge, Qt::magenta);
    }

    // But for how colours are rounded.
    static std::string firstDifference(QImage const& painted, QImage const& told)
    {
        for (int y = 0; y < painted.height(); ++y) {
            for (int x = 0; x < painted.width(); ++x) {
                auto const one = painted.pixel(x, y), other = told.pixel(x, y);
                if (std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other))
                        + std::abs(qBlue(one) - qBlue(other))
                    > 4)
                    return QStringLiteral("%1, %2").arg(x).arg(y).toStdString();
            }
        }
        return {};
    }

    void expectAsTold(double scale, QColor const& wash)
    {
        auto const whole = shot(scale);
        for (auto const& part : { QRect(0, 0, 90, 400), QRect(200, 37, 180, 40), QRect(380, 90, 100, 200) }) {
            QRect const pixels(part.topLeft() * scale, part.size() * scale);
            EXPECT_TRUE(shot(scale, part).copy(pixels) == whole.copy(pixels)) << part.left();
        }
        auto painted = whole;
        auto told = expected(scale, wash);
        for (auto const& block : blocks()) {
            expectRoundOutline(whole, block);
            takeEdgesOut(painted, block);
            takeEdgesOut(told, block);
        }
        EXPECT_EQ(firstDifference(painted, told), "");
    }
};

TEST_F(ReaderPaintingTest, Text_selection_blocks_and_buttons_are_painted_where_they_stand_and_nothing_else_is)
{
    struct Case {
        Appearance appearance;
        QColor highlight, wash;
    };
    Case const cases[] { { Appearance::light, Qt::blue, 0xB3B3FF }, { Appearance::light, Qt::gray, 0xD1D1D1 },
        { Appearance::dark, Qt::blue, 0x1F1F66 } };
    auto const longLine = u"code "_s.repeated(60);
    std::vector<std::pair<QString, RenderedMarkdown>> texts { { u"blocks"_s,
        sheet(u"before\n>short\nbetween\n>"_s + longLine + u"\nafter\n"_s + u"line\n"_s.repeated(30) + u">"_s
            + longLine) } };
    for (auto const& name : GoldenSheets::names())
        texts.emplace_back(name, GoldenSheets::rendered(name, 468));
    for (auto const& [name, text] : texts) {
        show(text);
        settle();
        for (auto const& [appearance, highlight, wash] : cases) {
            setPalette(appearance, highlight);
            for (auto const& place : { QPointF(0, 0), QPointF(0, 50.4), QPointF(150, 57), QPointF(1e6, 1e6) }) {
                for (auto const scale : { 1.0, 2.0 }) {
                    // Lines of tables are one pixel of the view's own screen.
                    if (scale > 1 && name != u"blocks"_s)
                        continue;
                    view.setScrollOrigin(place);
                    SCOPED_TRACE(QStringLiteral("%1 on %2 from %3, %4 at %5")
                            .arg(name, wash.name())
                            .arg(place.x())
                            .arg(place.y())
                            .arg(scale)
                            .toStdString());
                    auto const length = view.rendered().text.length();
                    view.setSelection({ length / 4, length / 4 * 3 });
                    expectAsTold(scale, wash);
                }
            }
        }
    }
}

// The smallest rectangle that holds every pixel in which they differ.
QRect changed(QImage const& one, QImage const& other)
{
    QRect area;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

TEST_F(ReaderPaintingTest, Code_in_a_line_is_outlined_while_a_click_would_copy_it_and_tinted_once_it_has)
{
    auto const text = u"A way to $ls -l$ and $mmmm$.\n>in a block\n"_s + u"more\n"_s.repeated(60);
    for (auto const appearance : { Appearance::light, Appearance::dark }) {
        setPalette(appearance, Qt::blue);
        show(sheet(text));
        settle();
        auto const plain = shot(1);
        auto const code = pointAt(u"ls -l"_s), prose = pointAt(u"way"_s);
        auto const box = view.boundingRect({ positionOf(u"ls -l"_s), 5 }).adjusted(-2, 0, 2, 0);
        auto const expectHand = [&](bool isThere, char const* when) {
            EXPECT_EQ(view.cursor().shape() == Qt::PointingHandCursor, isThere) << when;
            auto const part = QRectF(0, 0, view.width(), box.bottom() + 1).toRect(); // without the block's button
            EXPECT_EQ(changed(plain.copy(part), shot(1).copy(part)).isValid(), isThere) << when;
        };
        for (auto const& [point, isCode] :
            { std::pair(code, true), { prose, false }, { pointAt(u"block"_s), false }, { pointAt(u"mmmm"_s), true } }) {
            hover(point);
            expectHand(isCode, "over each part of the text");
        }
        hover(code);
        auto const outlined = shot(1);
        auto const around = box.toAlignedRect();
        EXPECT_TRUE(around.contains(changed(plain, outlined)));
        EXPECT_TRUE(changed(plain, outlined).contains(around.adjusted(1, 1, -1, -1)));
        auto const inside = around.adjusted(3, 3, -3, -3);
        EXPECT_EQ(plain.copy(inside), outlined.copy(inside));

        click(code);
        auto const middle = box.topLeft().toPoint() + QPoint(5, 3); // above the letters
        EXPECT_NE(shot(1).pixelColor(middle), outlined.pixelColor(middle)) << "tinted";
        executor.advance(Clipboard::feedbackTime);
        EXPECT_FALSE(changed(outlined, shot(1)).isValid());
        isClipboardFull = true;
        click(code);
        EXPECT_FALSE(changed(outlined, shot(1)).isValid()) << "nothing was copied";
        isClipboardFull = false;

        view.setScrollOrigin({ 0, 200 });
        EXPECT_EQ(view.cursor().shape(), Qt::IBeamCursor) << "the text has moved from under the pointer";
        view.setScrollOrigin({});
        expectHand(true, "come back");
        view.setLearningModeEnabled(true);
        expectHand(false, "in Learning Mode");
        view.setLearningModeEnabled(false);
        view.setSelection({ 0, 1 });
        EXPECT_EQ(view.cursor().shape(), Qt::IBeamCursor) << "the click would end the selection";
        view.setSelection({});
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&view, &leave);
        EXPECT_FALSE(changed(plain, shot(1)).isValid());
    }
}

TEST_F(ReaderPaintingTest, A_button_looks_different_when_it_is_over_when_it_has_copied_and_when_it_cannot)
{
    show(sheet(u">code"_s));
    auto* const button = view.codeButtons().front();
    std::vector<QImage> looks { button->grab().toImage() };
    auto const look = [&] {
        auto const image = button->grab().toImage();
        EXPECT_THAT(looks, Not(Contains(image))) << "after " << looks.size();
        looks.push_back(image);
    };
    button->click();
    look();
    button->setAttribute(Qt::WA_UnderMouse);
    look();
    button->setDown(true);
    look();
    view.setLearningModeEnabled(true);
    look();
}

}
}
