#include "text/Scalars.h"

#include <gtest/gtest.h>

#include <set>

namespace Quillory {
namespace {

TEST(Scalars, A_pair_counts_once_and_a_lone_half_counts_too)
{
    EXPECT_EQ(scalarCount(u""), 0);
    EXPECT_EQ(scalarCount(u"abc"), 3);
    EXPECT_EQ(scalarCount(u"e\u0301"), 2);
    EXPECT_EQ(scalarCount(u"\U0001F600"), 1);
    EXPECT_EQ(scalarCount(u"\U0001F468\u200D\U0001F469"), 3);
    char16_t const lone[] { 0xD83D, 0xD83D, 0xDE00, 0xDE00 };
    EXPECT_EQ(scalarCount(QStringView(lone, 4)), 3);
}

TEST(Scalars, White_space_is_exactly_the_Unicode_property)
{
    std::set<char32_t> const property { 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x20, 0x85, 0xA0, 0x1680, 0x2000, 0x2001, 0x2002,
        0x2003, 0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000 };
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar)
        ASSERT_EQ(isWhiteSpace(scalar), property.contains(scalar)) << std::hex << static_cast<uint>(scalar);
}

TEST(Scalars, Controls_are_Cc_and_Cf)
{
    for (char32_t const control :
        { 0x00U, 0x1FU, 0x7FU, 0x85U, 0x9FU, 0xADU, 0x180EU, 0x200BU, 0x200DU, 0x202EU, 0xFEFFU, 0xE0001U })
        EXPECT_TRUE(isControl(control)) << std::hex << static_cast<uint>(control);
    for (char32_t const other : { 0x20U, 0x41U, 0xA0U, 0x301U, 0x2028U, 0xE000U, 0xFFFDU, 0x1F600U })
        EXPECT_FALSE(isControl(other)) << std::hex << static_cast<uint>(other);
}

TEST(Scalars, A_text_is_blank_only_when_all_of_it_is_white_space)
{
    for (auto const* blank : { u"", u" ", u"\t\r\n\u0085\u00A0\u3000" })
        EXPECT_TRUE(isBlank(QStringView(blank)));
    for (auto const* other : { u" a ", u"\u200B", u"\uFEFF", u"\u001C", u" \U0001F600" })
        EXPECT_FALSE(isBlank(QStringView(other)));
}

}
}
