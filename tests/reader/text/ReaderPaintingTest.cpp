#include "reader/text/ReaderTextViewFixture.h"
#include "support/GoldenSheets.h"
#include "support/Ink.h"

#include <QPainter>

namespace Quillory {
namespace {

using Appearance = ReaderColors::Appearance;

class ReaderPaintingTest : public ReaderTextViewTest {
protected:
    void setPalette(Appearance appearance, QColor const& highlight)
    {
        auto const isDark = appearance == Appearance::dark;
        QPalette palette(isDark ? QColor(0xFF, 0xA0, 0xA0) : QColor(0xB0, 0, 0), isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::Text, isDark ? QColor(0xFF, 0xA0, 0xA0) : QColor(0xB0, 0, 0));
        palette.setColor(QPalette::Base, isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::Highlight, highlight);
        view.setPalette(palette);
    }

    QImage shot(double scale, QRect const& part = {})
    {
        QImage image(view.size() * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::magenta);
        view.render(&image, part.topLeft(), part.isNull() ? QRegion(view.rect()) : QRegion(part));
        return image;
    }

    std::vector<QRectF> blocks() const
    {
        std::vector<QRectF> rectangles;
        for (auto const target : view.blockTargets())
            rectangles.push_back(view.blockRectangle(target).translated(-view.scrollOrigin()));
        return rectangles;
    }
    static QRectF strip(QRectF const& block) { return { block.right() - 68, block.top(), 68, block.height() }; }

    // Surface and blocks, with plain corners.
    QImage backdrop(double scale) const
    {
        QImage image(view.size() * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(ReaderColors::surface.resolved(view.colors().appearance));
        QPainter painter(&image);
        for (auto const& block : blocks())
            painter.fillRect(block, ReaderColors::codeBackground.resolved(view.colors().appearance));
        return image;
    }

    void expectRoundOutline(Ink& ink, QRectF const& block) const
    {
        auto const color = ReaderColors::codeBorder.resolved(view.colors().appearance);
        auto const outline = [](QRectF const& at) { return at.adjusted(-1, -1, 1, 1); };
        for (auto const& edge : { QRectF(block.topLeft(), block.topRight()), { block.topLeft(), block.bottomLeft() },
                 { block.bottomLeft(), block.bottomRight() }, { block.topRight(), block.bottomRight() } }) {
            auto const found = ink.account(outline(edge), color, {}, 0);
            EXPECT_TRUE(!QRectF(view.rect()).contains(outline(edge)) || found.strongest > 0.2) << block.top();
            ink.ignore(outline(edge));
        }
        for (auto const& corner : { block.topLeft(), block.topRight() - QPointF(6, 0),
                 block.bottomLeft() - QPointF(0, 6), block.bottomRight() - QPointF(6, 6) })
            ink.ignore({ corner, QSizeF(6, 6) });
    }

    void expectInk(double scale)
    {
        auto const image = shot(scale);
        Ink ink(image, backdrop(scale));
        auto const surface = ReaderColors::surface.resolved(view.colors().appearance);
        for (auto const* const button : view.codeButtons()) {
            auto const icon = ink.account(button->geometry(), view.colors().label, {}, 0);
            EXPECT_TRUE(!view.rect().contains(button->geometry()) || icon.strongest > 0.5) << button->tag();
        }
        auto const shown = blocks();
        for (auto const& block : shown) {
            for (auto const& corner : { block.topLeft(), block.topRight() - QPointF(1, 0),
                     block.bottomLeft() - QPointF(0, 1), block.bottomRight() - QPointF(1, 1) }) {
                auto const isSeen = QRectF(view.rect()).contains(QRectF(corner, QSizeF(1, 1)));
                EXPECT_TRUE(!isSeen || image.pixelColor((corner * scale).toPoint()) == surface) << "a corner is round";
            }
            expectRoundOutline(ink, block);
        }
        auto const& text = view.rendered().text.string();
        for (TextRange line; line.end() < text.size(); line = { view.lineRange(line.end()).end() + 1, 0 }) {
            auto const range = view.lineRange(line.location);
            auto box = view.boundingRect(range).translated(-view.scrollOrigin());
            for (auto const& block : shown) {
                if (block.contains(box.center().x(), box.center().y())
                    || block.adjusted(-9e9, 0, 9e9, 0).intersects(box))
                    box &= block.adjusted(0, 0, -68, 0);
            }
            auto const seen = box & QRectF(view.rect());
            auto const isWorthIt = seen.height() > box.height() * 0.8 && seen.width() > 20;
            auto const found = ink.account(box, view.colors().label, {}, 1);
            EXPECT_TRUE(!isWorthIt || found.strongest > 0.5) << "line at " << line.location;
        }
        EXPECT_EQ(ink.leftOver(), "");
    }

    QRgb washed(QRgb plain, QColor const& wash) const
    {
        auto const mix = [this](int one, int other) {
            return view.colors().appearance == Appearance::dark ? 255 - (255 - one) * (255 - other) / 255
                                                                : one * other / 255;
        };
        return qRgb(mix(qRed(plain), wash.red()), mix(qGreen(plain), wash.green()), mix(qBlue(plain), wash.blue()));
    }
    static bool isNear(QRgb one, QRgb other)
    {
        return std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other))
            + std::abs(qBlue(one) - qBlue(other))
            <= 4;
    }

    // Every pixel is as it was or washed once; which of the two says the letter that stands there.
    void expectWash(QImage const& plain, QImage const& selected, QColor const& wash)
    {
        auto const isWashed = [&](QPoint at) { return isNear(selected.pixel(at), washed(plain.pixel(at), wash)); };
        // The outline of a block lies over the wash.
        QRegion outlines;
        for (auto const& block : blocks())
            outlines += QRegion(block.adjusted(-1, -1, 1, 1).toAlignedRect()) - block.adjusted(3, 3, -3, -3).toRect();
        for (auto const& rect : QRegion(view.rect()) - outlines) {
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x)
                    ASSERT_TRUE(selected.pixel(x, y) == plain.pixel(x, y) || isWashed({ x, y })) << x << ", " << y;
            }
        }
        auto const area = QRectF(view.rect()).adjusted(16, 1, -16, -1);
        for (qsizetype place = 0; place < view.rendered().text.length(); ++place) {
            auto const box = view.boundingRect({ place, 1 }).translated(-view.scrollOrigin());
            auto const isHidden = std::ranges::any_of(
                blocks(), [&](QRectF const& block) { return strip(block).adjusted(-9, 0, 99, 0).intersects(box); });
            auto const line = view.lineRange(place);
            auto const letters = QStringView(view.rendered().text.string()).sliced(line.location, line.length);
            // Where directions meet, boxes of letters overlap, and a tab has none that is its own.
            auto const isAmbiguous = letters.isRightToLeft() || letters[place - line.location] == u'\t';
            if (box.width() < 2 || isHidden || isAmbiguous || !area.contains(box))
                continue;
            auto const isSelected = place >= view.selection().start() && place < view.selection().end();
            auto const at = (box.topLeft() + QPointF(1, 1)).toPoint();
            ASSERT_TRUE(isSelected ? isWashed(at) : selected.pixel(at) == plain.pixel(at)) << place;
        }
    }

    void expectPartsToLookLikeTheWhole(double scale)
    {
        auto const whole = shot(scale);
        for (auto const& part : { QRect(0, 0, 90, 400), QRect(200, 37, 180, 40), QRect(380, 90, 100, 200) }) {
            QRect const pixels(part.topLeft() * scale, part.size() * scale);
            EXPECT_TRUE(shot(scale, part).copy(pixels) == whole.copy(pixels)) << part.left();
        }
    }
};

TEST_F(ReaderPaintingTest, Blocks_strips_buttons_and_lines_have_their_ink_and_nothing_else_has_any)
{
    auto const longLine = u"code "_s.repeated(60);
    show(sheet(
        u"before\n>short\nbetween\n>"_s + longLine + u"\nafter\n"_s + u"line\n"_s.repeated(30) + u">"_s + longLine));
    settle();
    for (auto const appearance : { Appearance::light, Appearance::dark }) {
        setPalette(appearance, Qt::blue);
        for (auto const& origin : { QPointF(0, 0), QPointF(0, 50.4), QPointF(150, 57), QPointF(1e6, 1e6) }) {
            for (auto const scale : { 1.0, 2.0 }) {
                view.setScrollOrigin(origin);
                SCOPED_TRACE(QStringLiteral("%1 of %2, %3 at %4")
                        .arg(int(appearance))
                        .arg(origin.x())
                        .arg(origin.y())
                        .arg(scale)
                        .toStdString());
                expectInk(scale);
                expectPartsToLookLikeTheWhole(scale);
            }
        }
    }
}

TEST_F(ReaderPaintingTest, A_button_looks_different_when_it_is_over_when_it_has_copied_and_when_it_cannot)
{
    show(sheet(u">code"_s));
    auto* const button = view.codeButtons().front();
    std::vector<QImage> looks { button->grab().toImage() };
    auto const look = [&] {
        auto const image = button->grab().toImage();
        EXPECT_THAT(looks, testing::Not(testing::Contains(image))) << "after " << looks.size();
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

TEST_F(ReaderPaintingTest, A_selection_is_a_wash_over_what_it_covers_and_over_nothing_else)
{
    struct Case {
        Appearance appearance;
        QColor highlight, wash;
    };
    for (auto const& [appearance, highlight, wash] : { Case { Appearance::light, Qt::blue, 0xB3B3FF },
             Case { Appearance::light, Qt::gray, 0xD1D1D1 }, Case { Appearance::dark, Qt::blue, 0x1F1F66 } }) {
        setPalette(appearance, highlight);
        for (auto const& name : GoldenSheets::names()) {
            SCOPED_TRACE(name.toStdString() + " on " + wash.name().toStdString());
            show(GoldenSheets::rendered(name, 468));
            settle();
            view.setScrollOrigin({ 0, 60 });
            view.setSelection({});
            auto const plain = shot(1);
            auto const length = view.rendered().text.length();
            view.setSelection({ length / 4, length / 4 * 3 });
            expectWash(plain, shot(1), wash);
        }
    }
}

}
}
