#include "text/TextOrder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

TEST(TextOrder, Texts_rise_by_scalar_of_their_composed_form)
{
    // Each is smaller than the next.
    QString const rising[] { {}, u"10"_s, u"2"_s, u"A"_s, u"Z"_s, u"a"_s, u"a "_s, u"ab"_s, u"b"_s, u"\u00C5"_s,
        u"a\u0301"_s, u"\u00E9"_s, u"e\u0301a"_s, u"\u0301"_s, u"\uAC00"_s, u"\uE000"_s, u"\uFF21"_s, u"\uFFFD"_s,
        u"\U00010000"_s, u"\U0001F600"_s, u"\U0001F600a"_s, u"\U0001F601"_s, u"\U0010FFFF"_s };
    for (std::size_t i = 0; i < std::size(rising); ++i) {
        for (std::size_t j = 0; j < std::size(rising); ++j)
            EXPECT_EQ(compareText(rising[i], rising[j]), i <=> j)
                << rising[i].toStdString() << " and " << rising[j].toStdString();
    }
}

TEST(TextOrder, Canonical_twins_are_one_text)
{
    QString const twins[][2] { { u"\u00E9"_s, u"e\u0301"_s }, { u"\u212B"_s, u"A\u030A"_s },
        { u"\u1EAD"_s, u"a\u0302\u0323"_s }, { u"\uAC01"_s, u"\u1100\u1161\u11A8"_s },
        { u"\uFB2C"_s, u"\u05E9\u05BC\u05C1"_s }, { u"\U000110AB e\u0301"_s, u"\U000110A5\U000110BA \u00E9"_s } };
    for (auto const& [a, b] : twins) {
        EXPECT_TRUE(canonicallyEqual(a, b)) << a.toStdString();
        EXPECT_EQ(compareText(a, b), std::strong_ordering::equal) << a.toStdString();
        EXPECT_EQ(canonicalForm(a), canonicalForm(b)) << a.toStdString();
    }
    QString const strangers[][2] { { u"e"_s, u"\u00E9"_s }, { u"A"_s, u"a"_s }, { u"\uFB01"_s, u"fi"_s },
        { u"a"_s, u"a\u200B"_s } };
    for (auto const& [a, b] : strangers)
        EXPECT_FALSE(canonicallyEqual(a, b)) << a.toStdString();
}

TEST(TextOrder, Long_texts_are_normalised_in_time_that_grows_with_their_length)
{
    constexpr qsizetype count = 300'000;
    struct Case {
        char const* name;
        QString unit, expectedUnit;
    };
    Case const cases[] {
        { "letters with a mark each", u"e\u0301"_s, u"\u00E9"_s },
        { "syllables in parts", u"\u1100\u1161\u11A8"_s, u"\uAC01"_s },
        { "vowel signs of two marks", u"\u0BC6\u0BBE"_s, u"\u0BCA"_s },
        { "characters that only decompose", u"\uFB2C"_s, u"\u05E9\u05BC\u05C1"_s },
    };
    for (auto const& [name, unit, expectedUnit] : cases)
        EXPECT_TRUE(canonicalForm(unit.repeated(count)) == expectedUnit.repeated(count)) << name;

    // One letter under a row of marks that stand in the wrong order throughout.
    auto const row = u'a' + u"\u0301\u0323"_s.repeated(count);
    EXPECT_TRUE(canonicalForm(row) == u'\u1EA1' + QString(count - 1, u'\u0323') + QString(count, u'\u0301'));
}

}
}
