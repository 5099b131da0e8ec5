#include "text/FoldedText.h"
#include "support/Dice.h"
#include "support/Test.h"
#include "text/SearchFolding.h"

#include <QTextBoundaryFinder>

namespace Quillory {
namespace {

using Direction = FoldedText::Direction;

std::vector<std::pair<qsizetype, qsizetype>> allMatches(QString const& text, QString const& query)
{
    FoldedText folded(text);
    std::vector<std::pair<qsizetype, qsizetype>> matches;
    qsizetype from = 0;
    while (auto const match = folded.find(foldedForSearch(query), from, text.size(), Direction::forwards)) {
        matches.emplace_back(match->location, match->length);
        from = match->location + match->length;
    }
    return matches;
}

TEST(FoldedTextTest, Matches_cover_the_very_characters_and_whole_clusters)
{
    using Case = std::tuple<char const*, QString, QString, std::vector<std::pair<qsizetype, qsizetype>>>;
    auto const family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    Case const cases[] {
        { "case", u"Git GIT gIt"_s, u"git"_s, { { 0, 3 }, { 4, 3 }, { 8, 3 } } },
        { "a composed mark", u"le café"_s, u"CAFE"_s, { { 3, 4 } } },
        { "a mark of its own", u"cafe\u0301s"_s, u"café"_s, { { 0, 5 } } },
        { "marks in the query alone", u"cafe"_s, u"ca\u0301fe\u0301"_s, { { 0, 4 } } },
        { "an expansion, whole", u"Straße"_s, u"STRASSE"_s, { { 0, 6 } } },
        { "an expansion, in part", u"Straße!"_s, u"se!"_s, { { 4, 3 } } },
        { "a ligature, in part", u"oﬃce"_s, u"ice"_s, { { 1, 3 } } },
        { "a letter that is folded in two steps", u"ẞ"_s, u"ß"_s, { { 0, 1 } } },
        { "Turkish I with a dot", u"İi"_s, u"i"_s, { { 0, 1 }, { 1, 1 } } },
        { "final sigma", u"ΟΔΟΣ οδός"_s, u"οδος"_s, { { 0, 4 }, { 5, 4 } } },
        { "above U+FFFF", u"x\U00010400\U0001F600y"_s, u"\U00010428\U0001F600"_s, { { 1, 4 } } },
        { "inside a sequence of emoji", u"a"_s + family + u"b"_s, u"\U0001F469"_s, { { 1, family.size() } } },
        { "decomposed Hangul", u"\u1112\u1161\u11AB"_s, u"한"_s, { { 0, 3 } } },
        { "marks alone find nothing", u"e\u0301 \u0301"_s, u"\u0301"_s, {} },
        { "an empty query finds nothing", u"abc"_s, u""_s, {} },
        { "marks at the start of a text", u"\u0301\u0302abc"_s, u"abc"_s, { { 2, 3 } } },
    };
    for (auto const& [description, text, query, matches] : cases)
        EXPECT_THAT(allMatches(text, query), ElementsAreArray(matches)) << description;
}

// Every grapheme cluster folded by itself says what a text looks like and where each piece of it came from.
struct PlainModel {
    explicit PlainModel(QString const& text)
    {
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        for (auto from = finder.position(), to = finder.toNextBoundary(); to >= 0;
            from = to, to = finder.toNextBoundary()) {
            auto const cluster = foldedForSearch(text.sliced(from, to - from));
            folded += cluster;
            for (qsizetype unit = 0; unit < cluster.size(); ++unit)
                sources.emplace_back(from, to);
        }
    }
    std::optional<TextRange> find(QString const& query, qsizetype from, qsizetype to, Direction direction) const
    {
        std::optional<TextRange> last;
        for (qsizetype at = 0; (at = folded.indexOf(query, at)) >= 0; ++at) {
            auto const start = sources[static_cast<std::size_t>(at)].first;
            auto const end = sources[static_cast<std::size_t>(at + query.size() - 1)].second;
            if (start < from || end > to)
                continue;
            last = TextRange { start, end - start };
            if (direction == Direction::forwards)
                return last;
        }
        return last;
    }

    QString folded;
    std::vector<std::pair<qsizetype, qsizetype>> sources;
};

TEST(FoldedTextTest, Random_texts_agree_with_folding_cluster_by_cluster)
{
    // Neither flags nor Indic letters: beside one another Qt 6.4 takes emoji apart.
    QStringList const pieces { u"a"_s, u"B"_s, u"ß"_s, u"e\u0301"_s, u"ﬃ"_s, u"\n"_s, u"\u0301"_s, u"\U0001F600"_s,
        u"\U0001F44D\U0001F3FD"_s, u"한"_s, u"ж"_s, u"中"_s, u"o"_s + u"\u0308"_s.repeated(3000) };
    Dice dice(7);
    auto const upTo = [&](qsizetype most) { return dice.below(most + 1); };
    for (int round = 0; round < 400; ++round) {
        QString text;
        for (auto count = upTo(30); count > 0; --count)
            text += pieces[upTo(round < 20 ? pieces.size() - 1 : pieces.size() - 2)];
        PlainModel const model(text);
        FoldedText folded(text);
        while (!folded.isComplete())
            folded.foldSome(1 + upTo(9));
        for (int search = 0; search < 20 && !model.folded.isEmpty(); ++search) {
            auto const at = upTo(model.folded.size() - 1);
            auto const query = model.folded.sliced(at, std::min(1 + upTo(4), model.folded.size() - at));
            if (query.front().isLowSurrogate() || query.back().isHighSurrogate())
                continue;
            auto const from = upTo(text.size());
            auto const to = from + upTo(text.size() - from);
            for (auto const direction : { Direction::forwards, Direction::backwards }) {
                ASSERT_EQ(folded.find(query, from, to, direction), model.find(query, from, to, direction))
                    << text.toStdString() << " / " << query.toStdString() << " from " << from << " to " << to;
            }
        }
    }
}

}
}
