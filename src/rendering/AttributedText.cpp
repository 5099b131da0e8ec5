#include "rendering/AttributedText.h"

#include <algorithm>

namespace Quillory {

struct AttributedText::PlacedStyle {
    quint32 style = 0;
    TableCell cell;
};

struct AttributedText::Data : QSharedData {
    QString string;
    std::vector<TextAttributes> attributes;
    std::vector<ParagraphStyle> styles;
    std::vector<PlacedStyle> placedStyles; // styles by their cells, of which there may be very many
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
    return m_data->styles[m_data->placedStyles[run.index].style];
}

TableCell AttributedText::tableCell(Run const& run) const
{
    return m_data->placedStyles[run.index].cell;
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

// Whether two lists of runs have equal lengths and mean the same.
bool sameRuns(std::span<Run const> ours, std::span<Run const> theirs, auto meanTheSame)
{
    auto checked = std::pair<quint32, quint32>(quint32(-1), quint32(-1));
    return std::ranges::equal(ours, theirs, [&](Run const& one, Run const& other) {
        if (one.location != other.location || one.length != other.length)
            return false;
        std::pair const indices(one.index, other.index);
        if (indices == checked)
            return true;
        checked = indices;
        return meanTheSame(one, other);
    });
}

}

bool AttributedText::operator==(AttributedText const& other) const
{
    if (m_data == other.m_data)
        return true;
    auto const sameAttributes = [&](Run const& one, Run const& another) {
        return attributes(one) == other.attributes(another);
    };
    auto const sameStyle = [&](Run const& one, Run const& another) {
        return paragraphStyle(one) == other.paragraphStyle(another) && tableCell(one) == other.tableCell(another);
    };
    return string() == other.string() && sameRuns(runs(), other.runs(), sameAttributes)
        && sameRuns(paragraphRuns(), other.paragraphRuns(), sameStyle);
}

AttributedText AttributedText::withWholeParagraphs() const
{
    auto const startsInside = [this](
                                  Run const& run) { return run.location > 0 && string()[run.location - 1] != u'\n'; };
    if (std::ranges::none_of(paragraphRuns(), startsInside))
        return *this;

    auto* const data = new Data(*m_data);
    auto& runs = data->paragraphRuns;
    runs.clear();
    auto end = length();
    // From the end on: each style reaches back to the start of the paragraph that it begins in.
    for (auto run = m_data->paragraphRuns.rbegin(); run != m_data->paragraphRuns.rend(); ++run) {
        if (run->location >= end)
            continue;
        auto const start = startsInside(*run) ? string().lastIndexOf(u'\n', run->location - 1) + 1 : run->location;
        if (!runs.empty() && runs.back().index == run->index)
            runs.back() = { start, runs.back().length + end - start, run->index };
        else
            runs.push_back({ start, end - start, run->index });
        end = start;
    }
    std::ranges::reverse(runs);
    return AttributedText(QExplicitlySharedDataPointer<Data const>(data));
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

QString AttributedText::Builder::textFrom(qsizetype location) const
{
    return m_data->string.sliced(location);
}

void AttributedText::Builder::reserve(qsizetype length)
{
    m_data->string.reserve(length);
}

AttributedText::Builder::StyleId AttributedText::Builder::add(ParagraphStyle const& style)
{
    // There are few, but for the columns of a sheet and the tables; and those come one after the other.
    auto& known = m_data->styles;
    if (known.empty() || known.back() != style)
        known.push_back(style);
    auto const index = static_cast<quint32>(known.size() - 1);
    auto& placed = m_data->placedStyles;
    if (placed.empty() || placed.back().style != index || placed.back().cell != TableCell())
        placed.push_back({ index, {} });
    return StyleId { static_cast<quint32>(placed.size() - 1) };
}

AttributedText::Builder::StyleId AttributedText::Builder::add(StyleId style, TableCell cell)
{
    auto& placed = m_data->placedStyles;
    placed.push_back({ placed[static_cast<std::size_t>(style)].style, cell });
    return StyleId { static_cast<quint32>(placed.size() - 1) };
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
    m_data->runs.shrink_to_fit();
    m_data->paragraphRuns.shrink_to_fit();
    m_data->placedStyles.shrink_to_fit();
    return AttributedText(QExplicitlySharedDataPointer<Data const>(m_data.take()));
}

}
