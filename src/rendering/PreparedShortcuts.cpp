#include "rendering/PreparedShortcuts.h"

#include "library/ShortcutText.h"
#include "rendering/ShortcutColumns.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

using Builder = AttributedText::Builder;
using Weight = FontAttribute::Weight;

constexpr double columnPadding = 10;
constexpr double columnBorder = 0.5;
constexpr double spacingAfterSheetDescription = 16;
constexpr double spacingBeforeSection = 18;
constexpr double spacingAfterSection = 8; // its title and its description
constexpr double spacingAfterEntry = 6;
constexpr double spacingAfterEntryText = 8;
constexpr double lineIncrease = 8; // over the text size
constexpr double lineSpacing = 2;
constexpr double titleIncrease = 6; // over the text size, of a section's title and icon
constexpr double shortcutIncrease = 4;
constexpr double iconBaseline = -3;
constexpr double gapAfterIcon = 8;
constexpr double gapBeforeShortcuts = 16;
constexpr double narrowestModifierGap = 5;
constexpr double modifierGap = 0.3; // of the text size
constexpr double keycapRoom = 5; // points beside the glyphs
constexpr QStringView alternativeSeparator = u" / ";
constexpr QStringView stepSeparator = u" → ";

constexpr std::array modifierColors { ColorRole::functionKey, ColorRole::controlKey, ColorRole::optionKey,
    ColorRole::shiftKey, ColorRole::commandKey };

}

PreparedShortcuts::PreparedShortcuts(
    ShortcutSheet const& sheet, Images const& images, double textSize, TextMeasure const& measure, KeyNames keyNames)
    : m_textSize(textSize)
    , m_keyNames(keyNames)
    , m_description(sheet.description.value_or(QString()))
    , m_extents(SectionExtent::ofAll(sheet))
{
    makeLooks(measure);
    for (auto const& section : sheet.sections) {
        m_sections.push_back({ iconOf(section, images), section.title, section.description.value_or(QString()), {} });
        for (auto const& entry : section.entries) {
            auto const& prepared = m_sections.back().entries.emplace_back(this->prepared(entry, measure));
            m_length += prepared.title.size() + prepared.shortcuts.size() + prepared.text.size() + 3;
        }
    }
}

void PreparedShortcuts::makeLooks(TextMeasure const& measure)
{
    m_looks.resize(firstModifierLook + 2 * modifierColors.size());
    m_looks[entryLook] = { .font = { .size = m_textSize } };
    m_looks[detailLook] = { .font = { .size = m_textSize - 1 }, .color = { ColorRole::secondaryLabel } };
    m_looks[titleLook] = { .font = { .size = m_textSize + titleIncrease, .weight = Weight::medium } };
    m_looks[descriptionLook] = { .font = { .size = m_textSize }, .color = { ColorRole::secondaryLabel } };
    m_looks[iconGapLook] = m_looks[titleLook];
    m_looks[iconGapLook].isGap = true;
    m_looks[iconGapLook].kern = gapAfterIcon - measure.width(u"\u00A0", m_looks[titleLook].font);
    auto const glyphs = [this](ColorRole role, double kern) {
        return TextAttributes { .font = { .family = FontAttribute::Family::monospaced,
                                    .size = m_textSize + shortcutIncrease,
                                    .weight = Weight::semibold },
            .color = { role },
            .background = Color { ColorRole::codeBackground },
            .keycap = keycapRoom,
            .kern = kern };
    };
    m_looks[keyLook] = glyphs(ColorRole::plainKey, 0);
    auto const gap = std::max(m_textSize * modifierGap, narrowestModifierGap);
    m_looks[jointLook] = glyphs(ColorRole::secondaryLabel, 0);
    for (std::size_t index = 0; index < modifierColors.size(); ++index) {
        m_looks[firstModifierLook + 2 * index] = glyphs(modifierColors[index], 0);
        m_looks[firstModifierLook + 2 * index + 1] = glyphs(modifierColors[index], gap);
    }
}

std::optional<Attachment> PreparedShortcuts::iconOf(ShortcutSheet::Section const& section, Images const& images) const
{
    if (!section.icon)
        return {};
    auto const size = m_textSize + titleIncrease;
    auto const prepared = images.constFind(*section.icon);
    if (prepared != images.cend())
        return Attachment { *prepared, size, size };
    return Attachment { Symbol { u"square.dashed"_s, { ColorRole::secondaryLabel } }, size, size };
}

PreparedShortcuts::Entry PreparedShortcuts::prepared(ShortcutSheet::Entry const& entry, TextMeasure const& measure)
{
    auto const width = [&](QStringView text) { return measure.width(text, m_looks[entryLook].font); };
    Entry prepared { .title = entry.title, .text = entry.text.value_or(QString()) };
    for (auto const& shortcut : entry.shortcuts) {
        if (&shortcut != &entry.shortcuts.first())
            append(prepared, alternativeSeparator, entryLook, width(alternativeSeparator));
        auto const location = prepared.shortcuts.size();
        for (auto const& step : shortcut.steps) {
            if (&step != &shortcut.steps.first())
                append(prepared, stepSeparator, entryLook, width(stepSeparator));
            append(prepared, step, measure);
        }
        prepared.targets.push_back({ location, prepared.shortcuts.size() - location });
        m_labels.append(entry.title + u", "_s + ShortcutText::spoken(shortcut, m_keyNames));
    }
    prepared.oneLineWidth += width(entry.title) + gapBeforeShortcuts;
    return prepared;
}

void PreparedShortcuts::append(Entry& entry, ShortcutSheet::Step const& step, TextMeasure const& measure) const
{
    auto const held = ShortcutText::modifiersOf(step);
    for (std::size_t index = 0; index < held.size(); ++index) {
        if (held[index])
            appendModifier(entry, index, measure);
    }
    auto const key = ShortcutText::keyText(step.key, m_keyNames);
    append(entry, key, keyLook, measure.width(key, m_looks[keyLook].font));
}

void PreparedShortcuts::appendModifier(Entry& entry, std::size_t index, TextMeasure const& measure) const
{
    auto const& modifier = ShortcutText::modifiers()[index];
    auto const look = firstModifierLook + 2 * index;
    auto const width = [&](QStringView text, std::size_t of) { return measure.width(text, m_looks[of].font); };
    if (m_keyNames == KeyNames::words) {
        append(entry, modifier.word, look, width(modifier.word, look));
        append(entry, ShortcutText::wordJoint, jointLook, width(ShortcutText::wordJoint, jointLook));
        return;
    }
    auto const symbol = modifier.symbol;
    append(entry, symbol.chopped(1), look, 0); // its letters are measured together
    append(entry, symbol.last(1), look + 1, width(symbol, look) + m_looks[look + 1].kern);
}

void PreparedShortcuts::append(Entry& entry, QStringView text, std::size_t look, double width)
{
    entry.shortcuts += text;
    entry.runs.push_back({ entry.shortcuts.size(), look });
    entry.oneLineWidth += width;
}

// One rendering.
class PreparedShortcuts::Drawing {
public:
    Drawing(PreparedShortcuts const& prepared, double width)
        : m_prepared(prepared)
        , m_columns(ShortcutColumns::arrange(prepared.m_extents, width, prepared.m_textSize))
    {
        m_text.reserve(prepared.m_length);
        m_targets.reserve(prepared.m_labels.size());
        for (auto const& look : prepared.m_looks)
            m_looks.push_back(m_text.add(look));
    }

    RenderedMarkdown draw()
    {
        if (!m_prepared.m_description.isEmpty()) {
            auto const style = m_text.add(ParagraphStyle { .paragraphSpacing = spacingAfterSheetDescription });
            appendLine(m_prepared.m_description, detailLook, style);
        }
        auto section = m_prepared.m_sections.begin();
        for (int column = 0; column < m_columns.count(); ++column) {
            beginColumn(column);
            for (auto left = m_columns.sectionCounts[static_cast<std::size_t>(column)]; left > 0; --left)
                append(*section++);
        }
        m_text.appendKnown(u"\n", m_looks[entryLook], m_text.add(ParagraphStyle()));
        auto text = std::move(m_text).build();
        return { text, CopyTargets(text.string(), std::move(m_targets), m_prepared.m_labels) };
    }

private:
    void beginColumn(int column)
    {
        TableBlock const block {
            .columns = m_columns.count(),
            .padding = columnPadding,
            .border = column > 0 ? TableBlock::Border::leftEdge : TableBlock::Border::none,
            .borderWidth = column > 0 ? columnBorder : 0,
            .widths = TableBlock::Widths::fixed,
            .widthPercent = 100.0 / m_columns.count(),
        };
        auto const style = [&](double after, double before = 0, bool isHeading = false) {
            ParagraphStyle const common {
                .minimumLineHeight = m_prepared.m_textSize + lineIncrease,
                .paragraphSpacingBefore = before,
                .paragraphSpacing = after,
                .lineSpacing = lineSpacing,
                .rightTabStop = m_columns.contentWidth,
                .block = block,
                .isHeading = isHeading,
            };
            return m_text.add(m_text.add(common), { .column = column });
        };
        m_sectionStyle = style(spacingAfterSection, 0, true);
        m_laterSectionStyle = style(spacingAfterSection, spacingBeforeSection, true);
        m_descriptionStyle = style(spacingAfterSection);
        m_entryStyle = style(spacingAfterEntry);
        m_entryTextStyle = style(spacingAfterEntryText);
        m_atTop = true;
    }

    void append(Section const& section)
    {
        auto const title = m_atTop ? m_sectionStyle : m_laterSectionStyle;
        m_atTop = false;
        if (section.icon) {
            auto attributes = m_prepared.m_looks[titleLook];
            attributes.baselineOffset = iconBaseline;
            attributes.attachment = section.icon;
            m_text.appendKnown(u"\uFFFC", m_text.add(attributes), title);
            m_text.appendKnown(u"\u00A0", m_looks[iconGapLook], title);
        }
        appendLine(section.title, titleLook, title);
        if (!section.description.isEmpty())
            appendLine(section.description, descriptionLook, m_descriptionStyle);
        for (auto const& entry : section.entries)
            append(entry);
    }

    void append(Entry const& entry)
    {
        auto const look = m_looks[entryLook];
        m_text.appendKnown(entry.title, look, m_entryStyle);
        if (!entry.targets.empty()) {
            auto const fits = m_columns.contentWidth >= entry.oneLineWidth;
            m_text.appendKnown(fits ? u"\t" : u"\n", look, m_entryStyle);
            appendShortcuts(entry);
        }
        m_text.appendKnown(u"\n", look, m_entryStyle);
        if (!entry.text.isEmpty())
            appendLine(entry.text, detailLook, m_entryTextStyle);
    }

    void appendShortcuts(Entry const& entry)
    {
        for (auto const& target : entry.targets)
            m_targets.append(CopyTargets::Place::inLine(m_text.length() + target.location, target.length));
        qsizetype start = 0;
        for (auto const& run : entry.runs) {
            auto const text = QStringView(entry.shortcuts).sliced(start, run.end - start);
            m_text.appendKnown(text, m_looks[run.look], m_entryStyle);
            start = run.end;
        }
    }

    void appendLine(QString const& text, std::size_t look, Builder::StyleId style)
    {
        m_text.appendKnown(text, m_looks[look], style);
        m_text.appendKnown(u"\n", m_looks[look], style);
    }

    PreparedShortcuts const& m_prepared;
    ShortcutColumns m_columns;
    Builder m_text;
    QList<CopyTargets::Place> m_targets;
    std::vector<Builder::AttributesId> m_looks;
    Builder::StyleId m_sectionStyle {}; // of the current column, and so are those below
    Builder::StyleId m_laterSectionStyle {};
    Builder::StyleId m_descriptionStyle {}; // of a section
    Builder::StyleId m_entryStyle {};
    Builder::StyleId m_entryTextStyle {};
    bool m_atTop = false;
};

RenderedMarkdown PreparedShortcuts::render(double width) const
{
    return Drawing(*this, width).draw();
}

}
