#include "rendering/AttributedText.h"

#include <algorithm>
#include <vector>

namespace Quillory {

namespace {

constexpr std::ptrdiff_t stylesLookedAt = 16;

}

struct AttributedText::PlacedStyle {
    quint32 style = 0;
    TableCell cell;
};

struct AttributedText::Data : QSharedData {
    QString string;
    std::vector<TextAttributes> attributes;
    std::vector<ParagraphStyle> styles;
    std::vector<PlacedStyle> placedStyles; // styles by their cells, of which there may be very many
    std::vector<HeldRun> runs;
    std::vector<HeldRun> paragraphRuns;

    static void extend(std::vector<HeldRun>& runs, qsizetype end, quint32 index)
    {
        if (!runs.empty() && runs.back().index == index)
            runs.back().end = static_cast<quint32>(end);
        else
            runs.push_back({ static_cast<quint32>(end), index });
    }

    static qsizetype runHolding(std::vector<HeldRun> const& runs, qsizetype location)
    {
        auto const holding = std::ranges::upper_bound(runs, static_cast<quint32>(location), {}, &HeldRun::end);
        return std::distance(runs.begin(), holding);
    }
};

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

AttributedText::Runs AttributedText::runs() const
{
    return Runs(m_data->runs);
}

AttributedText::Runs AttributedText::paragraphRuns() const
{
    return Runs(m_data->paragraphRuns);
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
    return Data::runHolding(m_data->runs, location);
}

qsizetype AttributedText::paragraphRunAt(qsizetype location) const
{
    return Data::runHolding(m_data->paragraphRuns, location);
}

namespace {

// Whether two lists of runs have equal lengths and mean the same.
bool sameRuns(AttributedText::Runs ours, AttributedText::Runs theirs, auto meanTheSame)
{
    using Run = AttributedText::Run;
    auto checked = std::pair<quint32, quint32>(quint32(-1), quint32(-1));
    auto const isSameSize = ours.size() == theirs.size();
    return isSameSize && std::equal(ours.begin(), ours.end(), theirs.begin(), [&](Run const& one, Run const& other) {
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
    auto const& held = m_data->paragraphRuns;
    auto const endsInside = [this](HeldRun const& run) {
        return run.end < string().size() && string()[run.end - 1] != u'\n';
    };
    if (std::ranges::none_of(held, endsInside))
        return *this;

    auto* const data = new Data(*m_data);
    auto& runs = data->paragraphRuns;
    runs.clear();
    qsizetype read = 0;
    qsizetype paragraph = 0; // where the one begins that a style ends in
    for (auto const& run : held) {
        auto const feed = QStringView(string()).sliced(read, run.end - read).lastIndexOf(u'\n');
        paragraph = feed < 0 ? paragraph : read + feed + 1;
        read = run.end;
        auto const end = endsInside(run) ? paragraph : read;
        if (runs.empty() ? end > 0 : end > runs.back().end)
            Data::extend(runs, end, run.index);
    }
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

void AttributedText::Builder::reserve(qsizetype length)
{
    m_data->string.reserve(length);
}

AttributedText::Builder::StyleId AttributedText::Builder::add(ParagraphStyle const& style)
{
    // There are few, but for tables of ever other widths; then what comes again is most often one of the last.
    auto& styles = m_data->styles;
    auto const recent = styles.rbegin() + std::min<std::ptrdiff_t>(std::ssize(styles), stylesLookedAt);
    auto const known = std::find(styles.rbegin(), recent, style);
    auto index = static_cast<quint32>(std::distance(known, styles.rend()) - 1);
    if (known == recent) {
        index = static_cast<quint32>(styles.size());
        styles.push_back(style);
    }
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
    Data::extend(m_data->runs, length(), static_cast<quint32>(attributes));
    Data::extend(m_data->paragraphRuns, length(), static_cast<quint32>(style));
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
    return AttributedText(QExplicitlySharedDataPointer<Data const>(m_data.data()));
}

}
