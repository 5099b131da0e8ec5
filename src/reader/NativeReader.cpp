#include "reader/NativeReader.h"

#include "rendering/MarkdownRenderer.h"
#include "text/Graphemes.h"
#include "text/OneLine.h"

#include <QCoreApplication>

#include <algorithm>

namespace Quillory {

namespace {

constexpr double widthOfCharacter = 0.65; // of the text size, wider than that of fixed-pitch fonts
constexpr double widthBesideCode = 80; // points: the block's own margins and its button
constexpr std::size_t mostKeptDocuments = 16;

// In characters as a person counts them, which are never more than units.
qsizetype longestLine(QStringView text, qsizetype longest)
{
    for (auto const line : text.tokenize(u'\n')) {
        if (line.size() > longest)
            longest = std::max(longest, graphemeCount(line));
    }
    return longest;
}

}

NativeReader::NativeReader(
    LibraryStore& store, ReaderServices const& services, std::function<void()> dismiss, QWidget* parent)
    : m_store(store)
    , m_executor(services.executor)
    , m_scrollView(new ReaderScrollView(services.executor, services.clipboard, parent))
    , m_folderObservation(store.generation.addNotifier([this] { forgetFolder(); }))
{
    textView().onCopy = [this](QString const& text) { return m_store.copy(text); };
    textView().onDismiss = std::move(dismiss);
    textView().onNavigate = [this](int offset) { m_store.selectAdjacent(offset); };
    textView().onOpenLink = [this](QString const& link) { m_store.openLink(link); };
}

NativeReader::~NativeReader() = default;

void NativeReader::prepareFor(Sheet const& next)
{
    if (!m_documentKey || m_documentKey->id == next.id)
        return;
    storePlace();
    m_isPlaceStored = true;
    textView().onScroll = nullptr;
}

void NativeReader::update(Sheet const& sheet)
{
    auto& view = textView();
    view.peekModifiers = m_store.peekModifiers;
    view.setLearningModeEnabled(m_store.learningModeEnabled);
    m_scrollView->window()->setWindowTitle(oneLine(sheet.title));
    if (auto const key = keyOf(sheet); m_documentKey != key)
        rebuild(sheet, key);
    view.onScroll = [this, id = sheet.id](QPointF point) { m_store.scrollPositions.insert(id, point); };
    serveFind();
}

DocumentKey NativeReader::keyOf(Sheet const& sheet) const
{
    DocumentKey key { sheet.id, sheet.source, {}, m_store.textSize, sheet.interpretation };
    for (auto const& [reference, image] : sheet.images.asKeyValueRange())
        key.images.append({ reference, image.fingerprint });
    return key;
}

void NativeReader::rebuild(Sheet const& sheet, DocumentKey const& key)
{
    auto& view = textView();
    if (!std::exchange(m_isPlaceStored, false) && m_documentKey)
        storePlace();
    view.onScroll = nullptr;
    auto old = std::exchange(m_documentKey, key);
    auto shown = view.show(documentFor(sheet, key));
    view.setSelection({});
    restorePlace(sheet.id);
    // A sheet that is only rendered again will not come back as it was.
    if (old && old->id != sheet.id)
        keep({ std::move(*old), std::move(shown) });
}

std::unique_ptr<ReaderDocument> NativeReader::documentFor(Sheet const& sheet, DocumentKey const& key)
{
    auto const fonts = FontSet::ofDesktop();
    auto const isSame = [&](Kept const& kept) { return kept.key == key && kept.document->layout().fonts() == fonts; };
    if (auto const known = std::ranges::find_if(m_kept, isSame); known != m_kept.end()) {
        auto document = std::move(known->document);
        m_kept.erase(known);
        return document;
    }
    auto const width = textView().textWidth();
    auto const& colors = textView().colors();
    if (sheet.shortcuts) {
        ReaderDocument::Shortcuts shortcuts { *sheet.shortcuts, sheet.images, m_store.textSize };
        return std::make_unique<ReaderDocument>(std::move(shortcuts), width, fonts, colors);
    }
    auto rendered = render(sheet);
    auto const codeWidth = minimumCodeWidth(rendered.copyTargets);
    return std::make_unique<ReaderDocument>(std::move(rendered), codeWidth, width, fonts, colors);
}

void NativeReader::keep(Kept kept)
{
    m_kept.push_front(std::move(kept));
    qsizetype characters = 0;
    auto const isTooMuch = [&](Kept const& each) {
        characters += each.document->rendered().text.length();
        return characters > mostKept;
    };
    m_kept.erase(std::ranges::find_if(m_kept, isTooMuch), m_kept.end());
    if (m_kept.size() > mostKeptDocuments)
        m_kept.pop_back();
}

void NativeReader::storePlace()
{
    auto& view = textView();
    auto const point = view.constrained(view.scrollOrigin());
    m_store.scrollPositions.insert(m_documentKey->id, point);
    m_places.insert(m_documentKey->id, { *m_documentKey, view.textWidths(), point, view.scrollAnchor() });
}

void NativeReader::restorePlace(QString const& id)
{
    auto& view = textView();
    auto const point = m_store.scrollPositions.value(id);
    auto const place = m_places.constFind(id);
    auto const isSame = place != m_places.cend() && place->key == m_documentKey && place->point == point
        && place->widths == view.textWidths();
    if (isSame)
        view.setScrollAnchor(place->anchor, point.x());
    else
        view.setScrollOrigin(point);
}

// A sheet of another folder may have the same name, and even the same text.
void NativeReader::forgetFolder()
{
    textView().onScroll = nullptr;
    m_documentKey.reset();
    m_kept.clear();
    m_places.clear();
}

RenderedMarkdown NativeReader::render(Sheet const& sheet) const
{
    if (sheet.parsed)
        return MarkdownRenderer::render(*sheet.parsed, sheet.title, sheet.images, m_store.textSize);
    return MarkdownRenderer::render(sheet.source, sheet.title, sheet.images, m_store.textSize);
}

double NativeReader::minimumCodeWidth(CopyTargets const& targets) const
{
    qsizetype longest = 0;
    for (qsizetype target = 0; target < std::ssize(targets); ++target)
        longest = longestLine(targets.text(target), longest);
    auto const width = static_cast<double>(longest) * m_store.textSize * widthOfCharacter + widthBesideCode;
    return std::clamp(width, ReaderDocument::smallestCodeWidth, TextLayout::largestCodeWidth);
}

void NativeReader::startAfresh()
{
    textView().startAfresh();
    m_lastFindRequest = -1;
    m_lastFindQuery.clear();
}

void NativeReader::serveFind()
{
    auto& view = textView();
    int const request = m_store.findRequest;
    auto const query = m_store.findQuery.value();
    if (m_lastFindRequest == request && m_lastFindQuery == query)
        return;
    auto const isNew = m_lastFindQuery != query;
    m_lastFindRequest = request;
    m_lastFindQuery = query;
    if (isNew)
        view.setSelection({});
    // A search that goes on at the other end finds whatever there is.
    auto const found = view.findNext(query, m_store.findBackwards);
    auto const status = query.isEmpty() ? QString()
        : found                         ? QCoreApplication::translate("NativeReader", "Match")
                                        : QCoreApplication::translate("NativeReader", "No matches");
    m_statusTask.end();
    if (status != m_store.findStatus.value())
        m_statusTask = m_executor.post([this, status] { m_store.findStatus.assignAs<NativeReader>(status); });
}

}
