#include "rendering/AttributedText.h"

#include <algorithm>

namespace Quillory {

struct AttributedText::Data : QSharedData {
    QString string;
    std::vector<TextAttributes> attributes;
    std::vector<ParagraphStyle> styles;
    std::vector<Run> runs;
    std::vector<Run> paragraphRuns;
};

namespace {

using Run = AttributedText::Run;

void extend(std::vector<Run>& runs, qsizetype length, quint32 index)
{
    if (!runs.empty() && runs.back().index == index) {
        runs.back().length += length;
        return;
    }
    auto const location = runs.empty() ? 0 : runs.back().location + runs.back().length;
    runs.push_back({ location, length, index });
}

qsizetype runHolding(std::vector<Run> const& runs, qsizetype location)
{
    auto const behind = std::ranges::upper_bound(runs, location, {}, &Run::location);
    return std::distance(runs.begin(), behind) - 1;
}

}

AttributedText::AttributedText()
    : m_data(new Data)
{
}

AttributedText::AttributedText(QExplicitlySharedDataPointer<Data const> data)
    : m_data(std::move(data))
{
}

AttributedText::AttributedText(AttributedText const& other) = default;
AttributedText::AttributedText(AttributedText&& other) noexcept = default;
AttributedText& AttributedText::operator=(AttributedText const& other) = default;
AttributedText& AttributedText::operator=(AttributedText&& other) noexcept = default;
AttributedText::~AttributedText() = default;

QString const& AttributedText::string() const
{
    return m_data->string;
}

std::span<Run const> AttributedText::runs() const
{
    return m_data->runs;
}

std::span<Run const> AttributedText::paragraphRuns() const
{
    return m_data->paragraphRuns;
}

TextAttributes const& AttributedText::attributes(Run const& run) const
{
    return m_data->attributes[run.index];
}

ParagraphStyle const& AttributedText::paragraphStyle(Run const& run) const
{
    return m_data->styles[run.index];
}

qsizetype AttributedText::runAt(qsizetype location) const
{
    return runHolding(m_data->runs, location);
}

qsizetype AttributedText::paragraphRunAt(qsizetype location) const
{
    return runHolding(m_data->paragraphRuns, location);
}

namespace {

// Whether two lists of runs have equal lengths and values. An index means something to its own text alone.
bool sameRuns(std::span<Run const> ours, std::span<Run const> theirs, auto const& ourValues, auto const& theirValues)
{
    auto checked = std::pair<quint32, quint32>(quint32(-1), quint32(-1));
    return std::ranges::equal(ours, theirs, [&](Run const& one, Run const& other) {
        if (one.location != other.location || one.length != other.length)
            return false;
        std::pair const indices(one.index, other.index);
        if (indices == checked)
            return true;
        checked = indices;
        return ourValues[one.index] == theirValues[other.index];
    });
}

}

bool AttributedText::operator==(AttributedText const& other) const
{
    return m_data == other.m_data
        || (m_data->string == other.m_data->string
            && sameRuns(m_data->runs, other.m_data->runs, m_data->attributes, other.m_data->attributes)
            && sameRuns(m_data->paragraphRuns, other.m_data->paragraphRuns, m_data->styles, other.m_data->styles));
}

AttributedText::Builder::Builder()
    : m_data(new Data)
{
}

AttributedText::Builder::~Builder() = default;

qsizetype AttributedText::Builder::length() const
{
    return m_data->string.size();
}

AttributedText::Builder::AttributesId AttributedText::Builder::add(TextAttributes const& attributes)
{
    auto const next = static_cast<quint32>(m_data->attributes.size());
    auto const known = m_attributeIndex.constFind(attributes);
    if (known != m_attributeIndex.cend())
        return AttributesId { *known };
    m_attributeIndex.insert(attributes, next);
    m_data->attributes.push_back(attributes);
    return AttributesId { next };
}

AttributedText::Builder::StyleId AttributedText::Builder::add(ParagraphStyle const& style)
{
    // Styles come in long stretches or, in tables, once each: the last one is the only one worth asking.
    if (m_data->styles.empty() || m_data->styles.back() != style)
        m_data->styles.push_back(style);
    return StyleId { static_cast<quint32>(m_data->styles.size() - 1) };
}

void AttributedText::Builder::appendKnown(QStringView text, AttributesId attributes, StyleId style)
{
    if (text.isEmpty())
        return;
    m_data->string += text;
    extend(m_data->runs, text.size(), static_cast<quint32>(attributes));
    extend(m_data->paragraphRuns, text.size(), static_cast<quint32>(style));
}

void AttributedText::Builder::append(QStringView text, TextAttributes const& attributes, ParagraphStyle const& style)
{
    if (!text.isEmpty())
        appendKnown(text, add(attributes), add(style));
}

void AttributedText::Builder::appendAttachment(TextAttributes const& attributes, ParagraphStyle const& style)
{
    append(QStringView(u"\uFFFC"), attributes, style);
}

AttributedText AttributedText::Builder::build() &&
{
    m_data->string.squeeze();
    return AttributedText(QExplicitlySharedDataPointer<Data const>(m_data.take()));
}

}
