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

bool AttributedText::operator==(AttributedText const& other) const
{
    if (m_data == other.m_data)
        return true;
    // Indices depend on the order of first use alone, so equal texts have equal tables.
    return m_data->string == other.m_data->string && m_data->runs == other.m_data->runs
        && m_data->paragraphRuns == other.m_data->paragraphRuns && m_data->attributes == other.m_data->attributes
        && m_data->styles == other.m_data->styles;
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

void AttributedText::Builder::append(QStringView text, TextAttributes const& attributes, ParagraphStyle const& style)
{
    if (text.isEmpty())
        return;
    m_data->string += text;

    auto& runs = m_data->runs;
    if (!runs.empty() && m_data->attributes[runs.back().index] == attributes) {
        runs.back().length += text.size();
    } else {
        auto const next = static_cast<quint32>(m_data->attributes.size());
        auto const known = m_attributeIndex.constFind(attributes);
        auto const index = known == m_attributeIndex.cend() ? next : *known;
        if (index == next) {
            m_attributeIndex.insert(attributes, next);
            m_data->attributes.push_back(attributes);
        }
        extend(runs, text.size(), index);
    }

    // Paragraph styles come in long stretches or, in tables, once each: the last one is the only one worth asking.
    if (m_data->styles.empty() || m_data->styles.back() != style)
        m_data->styles.push_back(style);
    extend(m_data->paragraphRuns, text.size(), static_cast<quint32>(m_data->styles.size() - 1));
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
