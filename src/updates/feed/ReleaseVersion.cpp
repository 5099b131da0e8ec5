#include "updates/feed/ReleaseVersion.h"

#include <QRegularExpression>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int longestText = 64;

// A word of digits alone, however long, as its digits without leading zeros.
std::optional<QStringView> digitsOf(QString const& word)
{
    auto const isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    if (!std::ranges::all_of(word, isDigit))
        return std::nullopt;
    auto const* const first = std::ranges::find_if(word, [](QChar character) { return character != u'0'; });
    return QStringView(first, word.cend());
}

std::weak_ordering compareWords(QString const& left, QString const& right)
{
    auto const leftDigits = digitsOf(left), rightDigits = digitsOf(right);
    if (!leftDigits || !rightDigits)
        return leftDigits || rightDigits ? rightDigits.has_value() <=> leftDigits.has_value()
                                         : left.compare(right) <=> 0;
    if (leftDigits->size() != rightDigits->size())
        return leftDigits->size() <=> rightDigits->size();
    return leftDigits->compare(*rightDigits) <=> 0;
}

}

std::optional<ReleaseVersion> ReleaseVersion::fromText(QString const& text)
{
    static QRegularExpression const form(
        QStringLiteral(R"(\A([0-9]{1,9}(?:\.[0-9]{1,9}){0,3})(?:[-~]([0-9A-Za-z]+(?:\.[0-9A-Za-z]+)*))?\z)"));
    if (text.size() > longestText)
        return std::nullopt;
    auto const match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    ReleaseVersion version;
    version.m_text = text;
    auto const numbers = match.captured(1).split(u'.');
    std::ranges::transform(numbers, version.m_numbers.begin(), [](QString const& number) { return number.toUInt(); });
    if (match.hasCaptured(2))
        version.m_words = match.captured(2).split(u'.');
    return version;
}

std::weak_ordering ReleaseVersion::operator<=>(ReleaseVersion const& other) const
{
    if (auto const numbers = m_numbers <=> other.m_numbers; numbers != 0)
        return numbers;
    if (isPrerelease() != other.isPrerelease())
        return other.isPrerelease() <=> isPrerelease();
    return std::lexicographical_compare_three_way(
        m_words.begin(), m_words.end(), other.m_words.begin(), other.m_words.end(), compareWords);
}

}
