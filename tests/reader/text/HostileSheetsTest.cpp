#include "reader/text/ReaderTextViewFixture.h"
#include "rendering/MarkdownRenderer.h"
#include "rendering/ShortcutRenderer.h"
#include "support/Dice.h"
#include "support/OddTexts.h"
#include "text/SearchFolding.h"
#include "textlayout/FontTextMeasure.h"

#include <QTextBoundaryFinder>

#include <cmath>
#include <set>

namespace Quillory {
namespace {

// Sheets put together at random from what breaks texts, positions and layouts elsewhere.
class HostileSheetsTest : public ReaderTextViewTest {
protected:
    QString nasty() { return dice.anyOf(oddPieces()); }
    QString nastyLine()
    {
        QString line;
        for (int part = dice.below(6); part >= 0; --part)
            line += nasty() + (dice.below(2) == 0 ? u" "_s : QString());
        return line;
    }
    QString markdown()
    {
        QString source;
        for (int number = 0; number < 8; ++number) {
            auto const line = nastyLine() + u"`ab"_s + nastyLine() + u"`"_s + nastyLine();
            switch (dice.below(5)) {
            case 0:
                source += u"\n\n```\n"_s + nastyLine() + u"\n\n```\n\n"_s;
                break;
            case 1:
                source += u"\n\na | b\n-|-\n"_s + line + u" | `ls` "_s + nastyLine() + u"\n\n"_s;
                break;
            case 2:
                source += u"- "_s + line + u'\n';
                break;
            default:
                source += line + u"\n\n"_s;
            }
        }
        return source;
    }
    RenderedMarkdown structured()
    {
        ShortcutSheet sheet { .description = nastyLine() };
        for (int section = dice.below(3); section >= 0; --section) {
            ShortcutSheet::Section added { .title = nastyLine(), .icon = u"none"_s };
            for (int entry = dice.below(4); entry >= 0; --entry)
                added.entries.append({ .title = nastyLine(),
                    .text = nastyLine(),
                    .shortcuts = { { { { { u"command"_s }, u"p"_s }, { {}, nasty() } } } } });
            sheet.sections.append(added);
        }
        return ShortcutRenderer::render(sheet, {}, view.textWidth(), 16, FontTextMeasure(view.fonts()));
    }

    void expectWholeTargets()
    {
        qsizetype end = 0;
        for (auto const& target : view.rendered().copyTargets) {
            auto const& [location, length] = target.range;
            ASSERT_GE(location, end);
            end = location + length;
            ASSERT_LE(end, string().size());
            auto shown = target.text.endsWith(u'\n') && target.isBlock ? target.text.chopped(1) : target.text;
            ASSERT_EQ(string().mid(location, length), shown.isEmpty() && target.isBlock ? u" "_s : shown);
        }
    }
    void expectSoundPlaces(std::set<qsizetype> const& borders)
    {
        ASSERT_TRUE(std::isfinite(view.contentSize().height()) && std::isfinite(view.contentSize().width()));
        for (int number = 0; number < 30; ++number) {
            QPointF const point(dice.below(500), view.scrollOrigin().y() + dice.below(400));
            ASSERT_LE(view.characterIndexAt(point), string().size());
            ASSERT_TRUE(borders.contains(view.insertionIndexAt(point))) << point.x() << ' ' << point.y();
            auto const box = view.boundingRect({ dice.below(string().size()), 1 });
            ASSERT_TRUE(box.height() > 0 && std::isfinite(box.top()) && std::isfinite(box.right()));
        }
        view.setSelection({});
        for (qsizetype before = -1; view.selection().head < std::min<qsizetype>(string().size(), 60);) {
            ASSERT_GT(view.selection().head, std::exchange(before, view.selection().head));
            ASSERT_TRUE(borders.contains(view.selection().head));
            QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
        }
    }
    void expectClicksToHit()
    {
        for (std::size_t index = 0; index < view.rendered().copyTargets.size(); ++index) {
            auto const target = view.rendered().copyTargets[index];
            if (target.isBlock || !target.text.startsWith(u"ab"))
                continue;
            view.setSelection({});
            view.scrollToVisible({ target.range.location, 1 });
            copied.clear();
            click(pointAt(target.range.location));
            ASSERT_EQ(copied, QStringList { target.text });
        }
    }
    void expectFound(std::set<qsizetype> const& borders)
    {
        for (int number = 0; number < 10; ++number) {
            auto const from = std::next(borders.begin(), dice.below(std::ssize(borders)));
            auto const to = std::next(from, std::min<qsizetype>(dice.below(6), std::distance(from, borders.end()) - 1));
            auto const query = string().mid(*from, *to - *from);
            auto const folded = foldedForSearch(query);
            view.setSelection({ *from, *from });
            ASSERT_EQ(view.findNext(query, false), !folded.isEmpty()) << query.toStdString();
            ASSERT_TRUE(borders.contains(view.selection().start()) && borders.contains(view.selection().end()));
            ASSERT_TRUE(foldedForSearch(selected()).contains(folded)) << query.toStdString();
        }
    }

    QString const& string() const { return view.rendered().text.string(); }

    Dice dice { 12 };
};

TEST_F(HostileSheetsTest, Keycaps_and_skin_tones_are_one_picture_each)
{
    show(sheet(u"1\uFE0F\u20E3 1\u20E3 \U0001F44D\U0001F3FD\U0001F44D"_s));
    auto const width = [this](qsizetype from, qsizetype length) { return view.boundingRect({ from, length }).width(); };
    EXPECT_GT(width(4, 2), 4 * width(3, 1)) << "a picture around the digit";
    EXPECT_NEAR(width(0, 3), width(4, 2), 1) << "not one beside it";
    EXPECT_NEAR(width(7, 4), width(11, 2), 0.3 * width(11, 2));
}

TEST_F(HostileSheetsTest, Ranges_places_clicks_and_finds_stay_whole)
{
    for (int round = 0; round < 24 && !HasFatalFailure(); ++round) {
        scroll.resize(200 + dice.below(5) * 150, 400);
        auto const isStructured = round % 4 == 3;
        auto const source = isStructured ? QString() : markdown();
        show(isStructured ? structured() : MarkdownRenderer::render(source, {}, {}, 16));
        std::set<qsizetype> borders { 0 };
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, string());
        while (finder.toNextBoundary() >= 0)
            borders.insert(finder.position());
        expectWholeTargets();
        expectSoundPlaces(borders);
        expectClicksToHit();
        expectFound(borders);
        settle();
        EXPECT_FALSE(HasFatalFailure()) << "round " << round << ": "
                                        << source.toUtf8().toPercentEncoding().toStdString();
    }
}

}
}
