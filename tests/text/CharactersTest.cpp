#include "support/Cases.h"
#include "support/Dice.h"
#include "text/Graphemes.h"
#include "text/HiddenCharacters.h"
#include "text/OneLine.h"
#include "text/Scalars.h"
#include "text/TextOrder.h"

#include <QTextBoundaryFinder>

namespace Quillory {
namespace {

TEST(Characters, Any_mixture_is_counted_as_the_boundary_finder_and_the_scalars_count_it)
{
    Dice dice(5);
    for (int round = 0; round < 20'000; ++round) {
        // Without Indic scripts: the finder then judges their neighbours by the script of the whole run.
        auto const text = dice.mixture(
            { u"a"_s, u"\r"_s, u"\n"_s, u"\u0301"_s, u"ё"_s, u"ж"_s, u"ω"_s, u"中"_s, u"か"_s, u"\u3099"_s, u"한"_s,
                u"\u1112"_s, u"\u1161"_s, u"\U0001F468"_s, u"\u200D"_s, u"\U0001F1E6"_s, u"\u00AE"_s, u"\uFE0F"_s },
            13);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        qsizetype expected = 0;
        while (finder.toNextBoundary() >= 0)
            ++expected;
        ASSERT_EQ(graphemeCount(text), expected) << text.toUtf8().toHex().toStdString();
        auto const cut = text.first(dice.below(text.size() + 1)); // which may leave half a pair
        ASSERT_EQ(scalarCount(cut + text), (cut + text).toUcs4().size()) << text.toUtf8().toHex().toStdString();
    }
}

TEST(Characters, Blanks_and_controls_are_those_of_the_Unicode_properties)
{
    forEachCase(u"classes"_s, [](auto const& row) {
        auto const text = row[0].toString();
        EXPECT_EQ(isBlank(text), row[1].toBool());
        EXPECT_EQ(isControl(text.toUcs4().first()), row[2].toBool());
    });
    EXPECT_TRUE(isBlank(QString()));
}

TEST(Characters, A_line_is_one_and_no_longer_than_asked_for)
{
    forEachCase(u"lines"_s, [](auto const& row) { EXPECT_EQ(oneLine(row[0].toString(), 5), row[1].toString()); });
    // One character of a million units must not cost or show more than a few.
    EXPECT_LT(oneLine(u"e"_s + QString(1'000'000, u'\u0301'), 5).size(), 400);
}

TEST(Characters, Hidden_ones_are_marked_unit_for_unit)
{
    forEachCase(u"hidden"_s, [](auto const& row) {
        auto const text = row[0].toString(), shown = row[1].toString();
        EXPECT_EQ(withMarksOfHiddenCharacters(text), shown);
        EXPECT_EQ(hasHiddenCharacters(text), text != shown);
    });
}

TEST(TextOrder, Texts_rise_by_scalar_of_their_composed_form_and_canonical_twins_are_one_text)
{
    QStringList rising; // each is smaller than the next
    forEachCase(u"rising"_s, [&](auto const& text) {
        rising << text.toString();
        for (qsizetype other = 0; other < rising.size(); ++other) {
            EXPECT_EQ(compareText(rising.last(), rising[other]), rising.size() - 1 <=> other) << other;
            EXPECT_EQ(compareText(rising[other], rising.last()), other <=> rising.size() - 1) << other;
        }
    });
    forEachCase(u"twins"_s, [](auto const& row) {
        auto const one = row[0].toString(), other = row[1].toString();
        EXPECT_EQ(canonicallyEqual(one, other), row[2].toBool());
        EXPECT_EQ(compareText(one, other) == std::strong_ordering::equal, row[2].toBool());
        EXPECT_EQ(canonicalForm(one) == canonicalForm(other), row[2].toBool());
    });
}

TEST(TextOrder, Long_texts_are_normalised_in_time_that_grows_with_their_length)
{
    constexpr qsizetype count = 300'000;
    forEachCase(u"units"_s, [](auto const& row) {
        EXPECT_TRUE(canonicalForm(row[0].toString().repeated(count)) == row[1].toString().repeated(count));
    });
    // One letter under a row of marks that stand in the wrong order throughout.
    auto const row = u'a' + u"\u0301\u0323"_s.repeated(count);
    EXPECT_TRUE(canonicalForm(row) == u'\u1EA1' + QString(count - 1, u'\u0323') + QString(count, u'\u0301'));
}

}
}
