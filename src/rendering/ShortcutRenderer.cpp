#include "rendering/ShortcutRenderer.h"

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
constexpr double gapBehindIcon = 8;
constexpr double gapBeforeShortcuts = 16;
constexpr double narrowestModifierGap = 5;
constexpr double modifierGap = 0.3; // of the text size
constexpr qsizetype usualShortcut = 10; // characters
constexpr QStringView alternativeSeparator = u" / ";
constexpr QStringView stepSeparator = u" → ";

constexpr std::array modifierColors { ColorRole::functionKey, ColorRole::controlKey, ColorRole::optionKey,
    ColorRole::shiftKey, ColorRole::commandKey };

class Renderer {
public:
    Renderer(ShortcutRenderer::Images const& images, TextMeasure const& measure, double textSize)
        : m_images(images)
        , m_measure(measure)
        , m_textSize(textSize)
        , m_base { .font = { .size = textSize } }
        , m_detail { .font = { .size = textSize - 1 }, .color = { ColorRole::secondaryLabel } }
        , m_sectionTitle { .font = { .size = textSize + titleIncrease, .weight = Weight::medium } }
        , m_sectionDescription { .font = { .size = textSize }, .color = { ColorRole::secondaryLabel } }
    {
        TextAttributes const glyphs { .font = { .family = FontAttribute::Family::monospaced,
                                          .size = textSize + shortcutIncrease,
                                          .weight = Weight::semibold },
            .background = Color { ColorRole::codeBackground } };
        m_shortcutFont = glyphs.font;
        auto const colored = [&glyphs](ColorRole role, double kern) {
            auto attributes = glyphs;
            attributes.color = { role };
            attributes.kern = kern;
            return attributes;
        };
        m_entry = m_text.add(m_base);
        m_key = m_text.add(colored(ColorRole::plainKey, 0));
        auto const gap = std::max(textSize * modifierGap, narrowestModifierGap);
        for (std::size_t index = 0; index < modifierColors.size(); ++index) {
            auto const role = modifierColors[index];
            auto const symbol = ShortcutText::modifiers()[index].symbol;
            m_modifiers[index] = { m_text.add(colored(role, 0)), m_text.add(colored(role, gap)),
                measure.width(symbol, m_shortcutFont) + gap };
        }
        m_alternativeWidth = measure.width(alternativeSeparator, m_base.font);
        m_arrowWidth = measure.width(stepSeparator, m_base.font);
    }

    RenderedMarkdown render(ShortcutSheet const& sheet, double width)
    {
        reserve(sheet);
        if (sheet.description && !sheet.description->isEmpty())
            m_text.append(*sheet.description + u'\n', m_detail, { .paragraphSpacing = spacingAfterSheetDescription });
        auto const columns = ShortcutColumns::arrange(sheet, width, m_textSize);
        auto section = sheet.sections.begin();
        for (int column = 0; column < columns.count(); ++column) {
            beginColumn(columns, column);
            for (auto left = columns.sectionCounts[static_cast<std::size_t>(column)]; left > 0; --left)
                append(*section++);
        }
        m_text.append(u"\n", m_base, {});
        return { std::move(m_text).build(), std::move(m_targets) };
    }

private:
    // All of a modifier's symbol but the last character, and that one, with the gap behind it.
    struct ModifierLook {
        Builder::AttributesId head;
        Builder::AttributesId last;
        double width; // with the gap
    };

    // A live resize renders at every step, and growing costs as much as filling.
    void reserve(ShortcutSheet const& sheet)
    {
        qsizetype characters = 0;
        std::size_t shortcuts = 0;
        for (auto const& section : sheet.sections) {
            for (auto const& entry : section.entries) {
                characters += entry.title.size() + entry.shortcuts.size() * usualShortcut;
                shortcuts += static_cast<std::size_t>(entry.shortcuts.size());
            }
        }
        m_text.reserve(characters);
        m_targets.reserve(shortcuts);
    }

    void beginColumn(ShortcutColumns const& columns, int column)
    {
        m_contentWidth = columns.contentWidth;
        TableBlock const block {
            .columns = columns.count(),
            .padding = columnPadding,
            .border = column > 0 ? TableBlock::Border::leftEdge : TableBlock::Border::none,
            .borderWidth = column > 0 ? columnBorder : 0,
            .widths = TableBlock::Widths::fixed,
            .widthPercent = 100.0 / columns.count(),
        };
        auto const style = [&](double after, double before = 0) {
            ParagraphStyle const common {
                .minimumLineHeight = m_textSize + lineIncrease,
                .paragraphSpacingBefore = before,
                .paragraphSpacing = after,
                .lineSpacing = lineSpacing,
                .rightTabStop = columns.contentWidth,
                .block = block,
            };
            return m_text.add(m_text.add(common), { .column = column });
        };
        m_sectionStyle = style(spacingAfterSection);
        m_laterSectionStyle = style(spacingAfterSection, spacingBeforeSection);
        m_entryStyle = style(spacingAfterEntry);
        m_entryTextStyle = style(spacingAfterEntryText);
        m_atTop = true;
    }

    void append(ShortcutSheet::Section const& section)
    {
        auto const title = m_atTop ? m_sectionStyle : m_laterSectionStyle;
        m_atTop = false;
        if (section.icon)
            appendIcon(*section.icon, title);
        appendLine(section.title, m_text.add(m_sectionTitle), title);
        if (section.description && !section.description->isEmpty())
            appendLine(*section.description, m_text.add(m_sectionDescription), m_sectionStyle);
        for (auto const& entry : section.entries)
            append(entry);
    }

    void appendLine(QString const& text, Builder::AttributesId attributes, Builder::StyleId style)
    {
        m_text.appendKnown(text, attributes, style);
        m_text.appendKnown(u"\n", attributes, style);
    }

    void appendIcon(QString const& icon, Builder::StyleId style)
    {
        auto const size = m_textSize + titleIncrease;
        auto attributes = m_sectionTitle;
        attributes.baselineOffset = iconBaseline;
        auto const prepared = m_images.constFind(icon);
        if (prepared != m_images.cend())
            attributes.attachment = { *prepared, size, size };
        else
            attributes.attachment = { Symbol { u"square.dashed"_s, { ColorRole::secondaryLabel } }, size, size };
        m_text.appendKnown(u"\uFFFC", m_text.add(attributes), style);

        auto gap = m_sectionTitle;
        gap.kern = gapBehindIcon - m_measure.width(u"\u00A0", gap.font);
        m_text.appendKnown(u"\u00A0", m_text.add(gap), style);
    }

    void append(ShortcutSheet::Entry const& entry)
    {
        m_text.appendKnown(entry.title, m_entry, m_entryStyle);
        if (!entry.shortcuts.isEmpty())
            m_text.appendKnown(fitsOnOneLine(entry) ? u"\t" : u"\n", m_entry, m_entryStyle);
        for (auto const& shortcut : entry.shortcuts) {
            if (&shortcut != &entry.shortcuts.first())
                m_text.appendKnown(alternativeSeparator, m_entry, m_entryStyle);
            append(shortcut, entry.title);
        }
        m_text.appendKnown(u"\n", m_entry, m_entryStyle);
        if (entry.text && !entry.text->isEmpty())
            appendLine(*entry.text, m_text.add(m_detail), m_entryTextStyle);
    }

    bool fitsOnOneLine(ShortcutSheet::Entry const& entry) const
    {
        auto width = static_cast<double>(entry.shortcuts.size() - 1) * m_alternativeWidth;
        for (auto const& shortcut : entry.shortcuts)
            width += widthOf(shortcut);
        return m_contentWidth >= width + m_measure.width(entry.title, m_base.font) + gapBeforeShortcuts;
    }

    double widthOf(ShortcutSheet::Shortcut const& shortcut) const
    {
        auto width = static_cast<double>(shortcut.steps.size() - 1) * m_arrowWidth;
        for (auto const& step : shortcut.steps) {
            auto const held = ShortcutText::modifiersOf(step);
            for (std::size_t index = 0; index < held.size(); ++index)
                width += held[index] ? m_modifiers[index].width : 0;
            width += m_measure.width(ShortcutText::keyText(step.key), m_shortcutFont);
        }
        return width;
    }

    void append(ShortcutSheet::Shortcut const& shortcut, QString const& entryTitle)
    {
        auto const location = m_text.length();
        for (auto const& step : shortcut.steps) {
            if (&step != &shortcut.steps.first())
                m_text.appendKnown(stepSeparator, m_entry, m_entryStyle);
            append(step);
        }
        m_targets.push_back({
            .range = { location, m_text.length() - location },
            .text = m_text.textFrom(location), // which is what it is shown as
            .accessibilityLabel = entryTitle + u", "_s + ShortcutText::spoken(shortcut),
        });
    }

    void append(ShortcutSheet::Step const& step)
    {
        auto const held = ShortcutText::modifiersOf(step);
        for (std::size_t index = 0; index < held.size(); ++index) {
            if (!held[index])
                continue;
            auto const symbol = ShortcutText::modifiers()[index].symbol;
            m_text.appendKnown(symbol.chopped(1), m_modifiers[index].head, m_entryStyle);
            m_text.appendKnown(symbol.last(1), m_modifiers[index].last, m_entryStyle);
        }
        m_text.appendKnown(ShortcutText::keyText(step.key), m_key, m_entryStyle);
    }

    ShortcutRenderer::Images const& m_images;
    TextMeasure const& m_measure;
    double m_textSize;
    Builder m_text;
    std::vector<CopyTarget> m_targets;

    TextAttributes m_base;
    TextAttributes m_detail; // the sheet's description and the entries' texts
    TextAttributes m_sectionTitle;
    TextAttributes m_sectionDescription;
    FontAttribute m_shortcutFont;
    Builder::AttributesId m_entry {};
    Builder::AttributesId m_key {};
    std::array<ModifierLook, modifierColors.size()> m_modifiers {};
    double m_alternativeWidth = 0;
    double m_arrowWidth = 0;

    double m_contentWidth = 0;
    Builder::StyleId m_sectionStyle {}; // of the current column, and so are those below
    Builder::StyleId m_laterSectionStyle {};
    Builder::StyleId m_entryStyle {};
    Builder::StyleId m_entryTextStyle {};
    bool m_atTop = false;
};

}

RenderedMarkdown ShortcutRenderer::render(
    ShortcutSheet const& sheet, Images const& images, double width, double textSize, TextMeasure const& measure)
{
    return Renderer(images, measure, textSize).render(sheet, width);
}

}
