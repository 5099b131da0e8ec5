#include "text/HiddenCharacters.h"

#include <algorithm>
#include <array>

namespace Quillory {

namespace {

constexpr char16_t mark = u'▯';
constexpr char16_t noMore = u'\u200B'; // in the place of a second unit: takes no room
constexpr char32_t pictureOfNull = U'␀', pictureOfDelete = U'␡';
constexpr char32_t firstJoinable = 0x0590; // the first script with joiners; all pictures but © and ® come later as well

struct Range {
    char32_t first;
    char32_t last;
};

// Default_Ignorable_Code_Point of Unicode 15, the controls of direction and of annotation, and the controls C0 and C1.
constexpr std::array<Range, 22> hiddenRanges { {
    { 0x0000, 0x0008 },
    { 0x000B, 0x000C },
    { 0x000E, 0x001F },
    { 0x007F, 0x0084 },
    { 0x0086, 0x009F },
    { 0x00AD, 0x00AD },
    { 0x034F, 0x034F },
    { 0x061C, 0x061C },
    { 0x115F, 0x1160 },
    { 0x17B4, 0x17B5 },
    { 0x180B, 0x180F },
    { 0x200B, 0x200F },
    { 0x202A, 0x202E },
    { 0x2060, 0x206F },
    { 0x3164, 0x3164 },
    { 0xFE00, 0xFE0F },
    { 0xFEFF, 0xFEFF },
    { 0xFFA0, 0xFFA0 },
    { 0xFFF0, 0xFFFB },
    { 0x1BCA0, 0x1BCA3 },
    { 0x1D173, 0x1D17A },
    { 0xE0000, 0xE0FFF },
} };

bool isHidden(char32_t scalar)
{
    auto const after = std::ranges::upper_bound(hiddenRanges, scalar, {}, &Range::first);
    return after != hiddenRanges.begin() && scalar <= std::prev(after)->last;
}

// Text without any of them is nearly all text.
bool mayBeHidden(QChar unit)
{
    auto const code = unit.unicode();
    return (code < 0x20 && code != u'\t' && code != u'\n' && code != u'\r') || (code >= 0x7F && code <= 0xAD)
        || (code >= 0x034F && code < 0x2070) || code == 0x3164 || code >= 0xD800;
}

bool isVariationSelector(char32_t scalar)
{
    return scalar >= 0xFE00 && scalar <= 0xFE0F;
}

bool isTag(char32_t scalar)
{
    return scalar >= 0xE0020 && scalar <= 0xE007F;
}

// What stands before a character, as far as that matters to it.
struct Before {
    char32_t scalar = 0; // 0 at the start and after a hidden one
    bool isInFlag = false; // tags that follow a flag name its region

    bool takes(char32_t scalar) const;
    void passOn(char32_t scalar, bool isHidden);
};

bool Before::takes(char32_t next) const
{
    constexpr char32_t joiner = 0x200D, nonJoiner = 0x200C;
    if (isTag(next))
        return isInFlag;
    if (next != joiner && next != nonJoiner && !isVariationSelector(next))
        return false;
    bool const isKeycap = isVariationSelector(next)
        && (scalar == '#' || scalar == '*' || (scalar >= '0' && scalar <= '9'));
    return scalar >= firstJoinable || scalar == U'©' || scalar == U'®' || isKeycap;
}

void Before::passOn(char32_t next, bool isHidden)
{
    constexpr char32_t blackFlag = 0x1F3F4;
    isInFlag = next == blackFlag || (isInFlag && isTag(next));
    scalar = isHidden || isVariationSelector(next) ? 0 : next;
}

// Calls `visit` with the place and the length of each.
template<typename Visit>
void forEachHidden(QStringView text, Visit visit)
{
    Before before;
    for (qsizetype place = 0; place < text.size();) {
        bool const isPair = text[place].isHighSurrogate() && place + 1 < text.size()
            && text[place + 1].isLowSurrogate();
        char32_t const scalar = isPair ? QChar::surrogateToUcs4(text[place], text[place + 1]) : text[place].unicode();
        bool const isOne = isHidden(scalar) && !before.takes(scalar);
        before.passOn(scalar, isOne);
        if (isOne)
            visit(place, scalar);
        place += isPair ? 2 : 1;
    }
}

}

bool hasHiddenCharacters(QStringView text)
{
    if (std::ranges::none_of(text, mayBeHidden))
        return false;
    bool isAny = false;
    forEachHidden(text, [&](qsizetype, char32_t) { isAny = true; });
    return isAny;
}

QString withMarksOfHiddenCharacters(QString text)
{
    if (std::ranges::none_of(text, mayBeHidden))
        return text;
    auto const original = text;
    forEachHidden(original, [&](qsizetype place, char32_t scalar) {
        auto const picture = scalar < 0x20 ? pictureOfNull + scalar : scalar == 0x7F ? pictureOfDelete : char32_t(mark);
        text[place] = QChar(static_cast<char16_t>(picture));
        if (QChar::requiresSurrogates(scalar))
            text[place + 1] = noMore;
    });
    return text;
}

}
