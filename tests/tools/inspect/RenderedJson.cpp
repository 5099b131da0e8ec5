#include "RenderedJson.h"

#include <algorithm>

namespace Quillory {

namespace {

void writeColor(JsonWriter& json, QStringView name, QStringView alphaName, Color const& color)
{
    json.member(name, QString(colorRoleName(color.role)));
    if (color.alpha != 1)
        json.numberMember(alphaName, color.alpha);
}

QStringView weightName(FontAttribute::Weight weight)
{
    switch (weight) {
    case FontAttribute::Weight::regular:
        return u"regular";
    case FontAttribute::Weight::medium:
        return u"medium";
    case FontAttribute::Weight::semibold:
        return u"semibold";
    case FontAttribute::Weight::bold:
        return u"bold";
    }
    Q_UNREACHABLE();
}

void writeFont(JsonWriter& json, FontAttribute const& font)
{
    json.key(u"font");
    json.beginObject();
    json.member(u"family", font.family == FontAttribute::Family::system ? u"system" : u"monospaced");
    json.numberMember(u"size", font.size);
    json.member(u"weight", weightName(font.weight));
    json.booleanMember(u"italic", font.italic);
    json.endObject();
}

void writeAttachment(JsonWriter& json, Attachment const& attachment)
{
    json.key(u"attachment");
    json.beginObject();
    json.numberMember(u"width", attachment.width);
    json.numberMember(u"height", attachment.height);
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
        json.booleanMember(u"strikethrough", true);
    if (attributes.kern != 0)
        json.numberMember(u"kern", attributes.kern);
    if (attributes.baselineOffset != 0)
        json.numberMember(u"baselineOffset", attributes.baselineOffset);
}

QStringView borderName(TableBlock::Border border)
{
    switch (border) {
    case TableBlock::Border::none:
        return u"none";
    case TableBlock::Border::leftEdge:
        return u"left";
    case TableBlock::Border::allEdges:
        return u"all";
    }
    Q_UNREACHABLE();
}

void writeBlock(JsonWriter& json, TableBlock const& block, TableCell cell)
{
    json.key(u"block");
    json.beginObject();
    json.integerMember(u"table", cell.table);
    json.integerMember(u"columns", block.columns);
    json.integerMember(u"row", cell.row);
    json.integerMember(u"column", cell.column);
    json.integerMember(u"rowSpan", 1);
    json.integerMember(u"columnSpan", 1);
    json.numberMember(u"padding", block.padding);
    json.member(u"border", borderName(block.border));
    json.numberMember(u"borderWidth", block.borderWidth);
    writeColor(json, u"borderColor", u"borderColorAlpha", block.borderColor);
    if (block.background)
        writeColor(json, u"background", u"backgroundAlpha", *block.background);
    if (block.widths == TableBlock::Widths::fixed)
        json.numberMember(u"widthPercent", block.widthPercent);
    json.endObject();
}

void writeParagraph(JsonWriter& json, ParagraphStyle const& style, TableCell cell)
{
    if (style == ParagraphStyle())
        return;
    json.key(u"paragraph");
    json.beginObject();
    json.numberMember(u"firstLineHeadIndent", style.firstLineHeadIndent);
    json.numberMember(u"headIndent", style.headIndent);
    json.numberMember(u"tailIndent", style.tailIndent);
    json.numberMember(u"minimumLineHeight", style.minimumLineHeight);
    json.numberMember(u"paragraphSpacingBefore", style.paragraphSpacingBefore);
    json.numberMember(u"paragraphSpacing", style.paragraphSpacing);
    json.numberMember(u"lineSpacing", style.lineSpacing);
    json.numberMember(u"rightTabStop", style.rightTabStop);
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
        json.integerMember(u"location", location);
        json.integerMember(u"length", end - location);
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
    json.beginObject();
    json.integerMember(u"location", target.range.location);
    json.integerMember(u"length", target.range.length);
    json.member(u"text", target.text);
    json.booleanMember(u"isBlock", target.isBlock);
    if (target.accessibilityLabel)
        json.member(u"accessibilityLabel", *target.accessibilityLabel);
    else
        json.nullMember(u"accessibilityLabel");
    json.endObject();
}

}

void writeRendered(JsonWriter& json, RenderedMarkdown const& rendered)
{
    json.beginObject();
    json.member(u"text", rendered.text.string());
    json.key(u"runs");
    writeRuns(json, rendered.text);
    json.key(u"copyTargets");
    json.beginArray();
    for (auto const& target : rendered.copyTargets) {
        json.beginLine();
        writeTarget(json, target);
    }
    json.endArray();
    json.endObject();
}

}
