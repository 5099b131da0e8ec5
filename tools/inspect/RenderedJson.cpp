#include "RenderedJson.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

void writeColor(JsonWriter& json, QStringView name, QStringView alphaName, Color const& color)
{
    json.member(name, QString(colorRoleName(color.role)));
    if (color.alpha != 1)
        json.member(alphaName, color.alpha);
}

void writeFont(JsonWriter& json, FontAttribute const& font)
{
    auto const weight = static_cast<std::size_t>(font.weight) / 100;
    static constexpr QStringView weights[] { {}, {}, {}, {}, u"regular", u"medium", u"semibold", u"bold" };
    json.key(u"font");
    json.object([&] {
        json.member(u"family", font.family == FontAttribute::Family::system ? u"system"_s : u"monospaced"_s);
        json.member(u"size", font.size);
        json.member(u"weight", weights[weight]);
        json.member(u"italic", font.italic);
    });
}

void writeAttachment(JsonWriter& json, Attachment const& attachment)
{
    json.key(u"attachment");
    json.beginObject();
    json.member(u"width", attachment.width);
    json.member(u"height", attachment.height);
    if (auto const* symbol = std::get_if<Symbol>(&attachment.picture)) {
        json.member(u"symbol", symbol->name);
        writeColor(json, u"color", u"colorAlpha", symbol->color);
    }
    json.endObject();
}

void writeAttributes(JsonWriter& json, TextAttributes const& attributes)
{
    if (attributes.attachment) {
        writeAttachment(json, *attributes.attachment);
        if (attributes == TextAttributes { .attachment = attributes.attachment })
            return;
    }
    writeFont(json, attributes.font);
    writeColor(json, u"color", u"colorAlpha", attributes.color);
    if (attributes.background)
        writeColor(json, u"background", u"backgroundAlpha", *attributes.background);
    if (!attributes.link.isEmpty())
        json.member(u"link", attributes.link);
    if (attributes.strikethrough)
        json.member(u"strikethrough", true);
    if (attributes.kern != 0)
        json.member(u"kern", attributes.kern);
    if (attributes.isGap)
        json.member(u"gap", true);
    if (attributes.baselineOffset != 0)
        json.member(u"baselineOffset", attributes.baselineOffset);
}

void writeBlock(JsonWriter& json, TableBlock const& block, TableCell cell)
{
    static constexpr QStringView borders[] { u"none", u"left", u"all" };
    json.key(u"block");
    json.beginObject();
    json.member(u"table", cell.table);
    json.member(u"columns", block.columns);
    json.member(u"row", cell.row);
    json.member(u"column", cell.column);
    json.member(u"rowSpan", 1);
    json.member(u"columnSpan", 1);
    json.member(u"padding", block.padding);
    json.member(u"border", borders[static_cast<std::size_t>(block.border)]);
    json.member(u"borderWidth", block.borderWidth);
    writeColor(json, u"borderColor", u"borderColorAlpha", block.borderColor);
    if (block.background)
        writeColor(json, u"background", u"backgroundAlpha", *block.background);
    if (block.widths == TableBlock::Widths::fixed)
        json.member(u"widthPercent", block.widthPercent);
    json.endObject();
}

void writeParagraph(JsonWriter& json, ParagraphStyle const& style, TableCell cell)
{
    if (style == ParagraphStyle())
        return;
    json.key(u"paragraph");
    json.beginObject();
    json.member(u"firstLineHeadIndent", style.firstLineHeadIndent);
    json.member(u"headIndent", style.headIndent);
    json.member(u"tailIndent", style.tailIndent);
    if (style.wrapping == ParagraphStyle::Wrapping::atContainer)
        json.member(u"wrapping", QStringLiteral("container"));
    json.member(u"minimumLineHeight", style.minimumLineHeight);
    json.member(u"paragraphSpacingBefore", style.paragraphSpacingBefore);
    json.member(u"paragraphSpacing", style.paragraphSpacing);
    json.member(u"lineSpacing", style.lineSpacing);
    json.member(u"rightTabStop", style.rightTabStop);
    if (style.block)
        writeBlock(json, *style.block, cell);
    json.endObject();
}

// One run for each stretch in which both the characters' attributes and the paragraph's style stay the same.
void writeRuns(JsonWriter& json, AttributedText const& text)
{
    auto const runs = text.runs();
    auto const paragraphs = text.paragraphRuns();
    json.beginArray();
    std::size_t run = 0;
    std::size_t paragraph = 0;
    for (qsizetype location = 0; location < text.length();) {
        auto const end = std::min(runs[run].end(), paragraphs[paragraph].end());
        json.beginLine();
        json.beginObject();
        json.member(u"location", location);
        json.member(u"length", end - location);
        writeAttributes(json, text.attributes(runs[run]));
        writeParagraph(json, text.paragraphStyle(paragraphs[paragraph]), text.tableCell(paragraphs[paragraph]));
        json.endObject();
        run += runs[run].end() == end ? 1U : 0U;
        paragraph += paragraphs[paragraph].end() == end ? 1U : 0U;
        location = end;
    }
    json.endArray();
}

void writeTarget(JsonWriter& json, CopyTarget const& target)
{
    json.object([&] {
        json.member(u"location", target.range.location);
        json.member(u"length", target.range.length);
        json.member(u"text", target.text);
        json.member(u"isBlock", target.isBlock);
        json.member(u"accessibilityLabel", target.accessibilityLabel);
    });
}

}

void writeRendered(JsonWriter& json, RenderedMarkdown const& rendered)
{
    json.beginObject();
    json.member(u"text", rendered.text.string());
    json.key(u"runs");
    writeRuns(json, rendered.text);
    json.key(u"copyTargets");
    json.array(rendered.copyTargets, [&](CopyTarget const& target) {
        json.beginLine();
        writeTarget(json, target);
    });
    json.endObject();
}

}
