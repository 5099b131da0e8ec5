#include "reader/NativeReader.h"

#include "rendering/MarkdownRenderer.h"
#include "rendering/ShortcutRenderer.h"
#include "textlayout/FontTextMeasure.h"

#include <algorithm>

namespace Quillory {

namespace {

constexpr double smallestWidth = 330;
constexpr double largestWidth = 12000;
constexpr double smallestStructuredWidth = 100;
constexpr double widthOfCharacter = 0.65; // of the text size
constexpr double widthBesideCode = 80;
constexpr double widthBesideText = 32;

qsizetype longestLine(QStringView text)
{
    qsizetype longest = 0;
    for (auto const line : text.tokenize(u'\n'))
        longest = std::max(longest, line.size());
    return longest;
}

}

NativeReader::NativeReader(LibraryStore& store, ReaderTextView& textView)
    : m_store(store)
    , m_textView(textView)
{
    m_textView.onNavigate = [this](int offset) { m_store.selectAdjacent(offset); };
}

void NativeReader::update(Sheet const& sheet)
{
    auto key = keyOf(sheet);
    if (m_key != key)
        rebuild(sheet, std::move(key));
}

NativeReader::DocumentKey NativeReader::keyOf(Sheet const& sheet) const
{
    DocumentKey key { sheet.id, sheet.source, {}, m_store.textSize };
    for (auto const& [reference, image] : sheet.images.asKeyValueRange())
        key.images.append({ reference, image.fingerprint });
    return key;
}

void NativeReader::rebuild(Sheet const& sheet, DocumentKey key)
{
    if (m_key)
        m_store.scrollPositions.insert(m_key->id, m_textView.scrollOrigin());
    auto const origin = m_store.scrollPositions.value(sheet.id);
    m_textView.onScroll = nullptr;
    m_key = std::move(key);
    m_textView.setRendered(render(sheet));
    m_textView.setMinimumCodeWidth(minimumWidth(sheet));
    m_textView.setScrollOrigin(origin);
    m_textView.onScroll = [this, id = sheet.id](QPointF point) { m_store.scrollPositions.insert(id, point); };
}

RenderedMarkdown NativeReader::render(Sheet const& sheet) const
{
    if (sheet.shortcuts) {
        auto const width = std::max(m_textView.viewport()->width() - widthBesideText, smallestStructuredWidth);
        return ShortcutRenderer::render(
            *sheet.shortcuts, sheet.images, width, m_store.textSize, FontTextMeasure(FontSet::ofDesktop()));
    }
    if (sheet.parsed)
        return MarkdownRenderer::render(*sheet.parsed, sheet.title, sheet.images, m_store.textSize);
    return MarkdownRenderer::render(sheet.source, sheet.title, sheet.images, m_store.textSize);
}

double NativeReader::minimumWidth(Sheet const& sheet) const
{
    if (sheet.shortcuts)
        return smallestStructuredWidth;
    qsizetype longest = 0;
    for (auto const& target : m_textView.rendered().copyTargets)
        longest = std::max(longest, longestLine(target.text));
    auto const width = static_cast<double>(longest) * m_store.textSize * widthOfCharacter + widthBesideCode;
    return std::clamp(width, smallestWidth, largestWidth);
}

}
