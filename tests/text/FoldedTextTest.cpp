#include "text/FoldedText.h"
#include "support/Cases.h"
#include "support/Dice.h"
#include "text/SearchBytes.h"
#include "text/SearchFolding.h"

#include <QTextBoundaryFinder>

namespace Quillory {
namespace {

using Direction = FoldedText::Direction;

TEST(FoldedTextTest, Matches_cover_the_very_characters_and_whole_clusters)
{
    forEachCase(u"matches"_s, [](auto const& row) {
        FoldedText folded(row[1].toString());
        QJsonArray matches;
        qsizetype from = 0;
        auto const next = [&] {
            return folded.find(foldedForSearch(row[2].toString()), from, row[1].toString().size(), Direction::forwards);
        };
        for (auto match = next(); match; match = next()) {
            matches.append(QJsonArray { match->location, match->length });
            from = match->end();
        }
        EXPECT_EQ(matches, row[3].toArray());
    });
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
    Dice dice(7);
    auto const upTo = [&](qsizetype most) { return dice.below(most + 1); };
    for (int round = 0; round < 400; ++round) {
        // Neither flags nor Indic letters: beside one another Qt 6.4 takes emoji apart.
        auto const text = dice.mixture({ u"a"_s, u"B"_s, u"ß"_s, u"e\u0301"_s, u"ﬃ"_s, u"\n"_s, u"\u0301"_s,
                                           u"\U0001F600"_s, u"\U0001F44D\U0001F3FD"_s, u"한"_s, u"ж"_s, u"中"_s,
                                           u"o"_s + u"\u0308"_s.repeated(round < 20 ? 3000 : 1) },
            31);
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

TEST(SearchBytesTest, A_text_holds_what_its_folded_form_holds_wherever_a_query_begins)
{
    Dice dice(11);
    std::initializer_list<QString> const pieces { u"a"_s, u"B"_s, u"ß"_s, u"E\u0301"_s, u"각"_s, u"가"_s, u"\u1100"_s,
        u"\u1161"_s, u"\u11A8"_s, u"\u0301"_s, u"\U0001F600"_s, u"ж"_s, u"中"_s, u"\u0BCA"_s, u"\n"_s, u"À"_s };
    for (int round = 0; round < 20'000; ++round) {
        auto const text = dice.mixture(pieces, 12);
        auto const query = dice.mixture(pieces, 4);
        auto const folded = foldedForSearch(query);
        ASSERT_EQ(holdsSearchBytes(searchBytes(text), searchBytes(query)),
            !folded.isEmpty() && foldedForSearch(text).contains(folded))
            << text.toStdString() << " / " << query.toStdString();
    }
    for (auto const& ordinary : { u"한글은 배우기 쉽다"_s, u"Ἐν ἀρχῇ ἦν ὁ λόγος"_s, u"கொடி நோய் கௌரவம்"_s,
             u"কোনো কৌশল নেই ভালো"_s, u"Größe: ﬁxieren"_s, u"Đặng Thị Hường"_s })
        EXPECT_LE(searchBytes(ordinary).size() * 10, ordinary.toUtf8().size() * 11) << ordinary.toStdString();
}

}
}
