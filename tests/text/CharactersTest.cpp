#include "support/Dice.h"
#include "support/Test.h"
#include "text/Graphemes.h"
#include "text/Scalars.h"
#include "text/TextOrder.h"

#include <QTextBoundaryFinder>

#include <set>

namespace Quillory {
namespace {

TEST(Graphemes, Any_mixture_counts_as_the_boundary_finder_counts_it)
{
    // Without Indic scripts: the finder then judges their neighbours by the script of the whole run.
    QStringList const pieces { u"a"_s, u"\r"_s, u"\n"_s, u"\u0301"_s, u"ё"_s, u"ж"_s, u"ω"_s, u"中"_s, u"か"_s,
        u"\u3099"_s, u"한"_s, u"\u1112"_s, u"\u1161"_s, u"\U0001F468"_s, u"\u200D"_s, u"\U0001F1E6"_s, u"\u00AE"_s,
        u"\uFE0F"_s };
    Dice dice(5);
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (auto left = dice.below(13); left > 0; --left)
            text += dice.anyOf(pieces);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        qsizetype expected = 0;
        while (finder.toNextBoundary() >= 0)
            ++expected;
        ASSERT_EQ(graphemeCount(text), expected) << text.toUtf8().toHex().toStdString();
    }
}

TEST(Scalars, A_pair_counts_once_and_a_lone_half_counts_too)
{
    char16_t const lone[] { 0xD83D, 0xD83D, 0xDE00, 0xDE00 };
    for (auto const& [text, count] :
        std::initializer_list<std::pair<QStringView, qsizetype>> { { u"", 0 }, { u"abc", 3 }, { u"e\u0301", 2 },
            { u"\U0001F600", 1 }, { u"\U0001F468\u200D\U0001F469", 3 }, { { lone, 4 }, 3 } })
        EXPECT_EQ(scalarCount(text), count) << text.toString().toStdString();
}

TEST(Scalars, Classes_are_those_of_the_Unicode_properties)
{
    std::set<char32_t> const whiteSpace { 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x20, 0x85, 0xA0, 0x1680, 0x2000, 0x2001,
        0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F,
        0x3000 };
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar)
        ASSERT_EQ(isWhiteSpace(scalar), whiteSpace.contains(scalar)) << std::hex << static_cast<uint>(scalar);
    for (char32_t const control :
        { 0x00U, 0x1FU, 0x7FU, 0x85U, 0x9FU, 0xADU, 0x180EU, 0x200BU, 0x200DU, 0x202EU, 0xFEFFU, 0xE0001U })
        EXPECT_TRUE(isControl(control)) << std::hex << static_cast<uint>(control);
    for (char32_t const other : { 0x20U, 0x41U, 0xA0U, 0x301U, 0x2028U, 0xE000U, 0xFFFDU, 0x1F600U })
        EXPECT_FALSE(isControl(other)) << std::hex << static_cast<uint>(other);
    for (auto const* blank : { u"", u" ", u"\t\r\n\u0085\u00A0\u3000" })
        EXPECT_TRUE(isBlank(QStringView(blank)));
    for (auto const* other : { u" a ", u"\u200B", u"\uFEFF", u"\u001C", u" \U0001F600" })
        EXPECT_FALSE(isBlank(QStringView(other)));
}

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
    for (auto const& [a, b, areTwins] : std::initializer_list<std::tuple<QString, QString, bool>> {
             { u"\u00E9"_s, u"e\u0301"_s, true }, { u"\u212B"_s, u"A\u030A"_s, true },
             { u"\u1EAD"_s, u"a\u0302\u0323"_s, true }, { u"\uAC01"_s, u"\u1100\u1161\u11A8"_s, true },
             { u"\U000110AB e\u0301"_s, u"\U000110A5\U000110BA \u00E9"_s, true },
             { u"\uFB2C"_s, u"\u05E9\u05BC\u05C1"_s, true }, { u"e"_s, u"\u00E9"_s, false }, { u"A"_s, u"a"_s, false },
             { u"\uFB01"_s, u"fi"_s, false }, { u"a"_s, u"a\u200B"_s, false } }) {
        EXPECT_EQ(canonicallyEqual(a, b), areTwins) << a.toStdString();
        EXPECT_EQ(compareText(a, b) == std::strong_ordering::equal, areTwins) << a.toStdString();
        EXPECT_EQ(canonicalForm(a) == canonicalForm(b), areTwins) << a.toStdString();
    }
}

TEST(TextOrder, Long_texts_are_normalised_in_time_that_grows_with_their_length)
{
    constexpr qsizetype count = 300'000;
    for (auto const& [unit, expected] :
        std::initializer_list<std::pair<QString, QString>> { { u"e\u0301"_s, u"\u00E9"_s }, // letters with a mark each
            { u"\u1100\u1161\u11A8"_s, u"\uAC01"_s }, // syllables in parts
            { u"\u0BC6\u0BBE"_s, u"\u0BCA"_s }, // vowel signs of two marks
            { u"\uFB2C"_s, u"\u05E9\u05BC\u05C1"_s } }) // characters that only decompose
        EXPECT_TRUE(canonicalForm(unit.repeated(count)) == expected.repeated(count)) << unit.toStdString();

    // One letter under a row of marks that stand in the wrong order throughout.
    auto const row = u'a' + u"\u0301\u0323"_s.repeated(count);
    EXPECT_TRUE(canonicalForm(row) == u'\u1EA1' + QString(count - 1, u'\u0323') + QString(count, u'\u0301'));
}

}
}
