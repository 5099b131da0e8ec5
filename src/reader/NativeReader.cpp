#include "reader/NativeReader.h"

#include "rendering/MarkdownRenderer.h"
#include "text/Graphemes.h"
#include "text/OneLine.h"

#include <QCoreApplication>

#include <algorithm>
#include <tuple>

namespace Quillory {

namespace {

constexpr double widthOfCharacter = 0.65; // of the text size, wider than that of fixed-pitch fonts
constexpr double widthBesideCode = 80; // points: the block's own margins and its button
constexpr std::size_t mostKeptDocuments = 16;
constexpr qsizetype longSheet = 131'072; // characters; those of a shorter one are rendered within a few milliseconds
constexpr qsizetype beginningOfLongSheet = 32'768; // likewise, and more than any screen shows

// In characters as a person counts them, which are never more than units.
qsizetype longestLine(QStringView text, qsizetype longest)
{
    for (auto const line : text.tokenize(u'\n')) {
        if (line.size() > longest)
            longest = std::max(longest, graphemeCount(line));
    }
    return longest;
}

bool isLong(Sheet const& sheet)
{
    return !sheet.shortcuts && sheet.parsed && sheet.parsed->stringsLength() > longSheet;
}

// That code asks for, so that its longest line stays in one.
double minimumCodeWidth(CopyTargets const& targets, double textSize)
{
    qsizetype longest = 0;
    for (qsizetype target = 0; target < std::ssize(targets); ++target)
        longest = longestLine(targets.text(target), longest);
    auto const width = static_cast<double>(longest) * textSize * widthOfCharacter + widthBesideCode;
    return std::clamp(width, ReaderDocument::smallestCodeWidth, TextLayout::largestCodeWidth);
}

}

NativeReader::Rendering::Rendering(RenderedMarkdown made, double textSize)
    : rendered(std::move(made))
    , codeWidth(minimumCodeWidth(rendered.copyTargets, textSize))
{
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
    if (auto const key = keyOf(sheet); m_documentKey == key)
        m_change = {};
    else if (!isChangeRendered(sheet, key))
        rebuild(sheet, key);
    view.onScroll = [this, id = sheet.id](QPointF point) {
        m_awaitsPlace = false;
        m_store.scrollPositions.insert(id, point);
    };
    serveFind();
}

// A long sheet that changes while it is read further down stays as it is until a worker has rendered it.
bool NativeReader::isChangeRendered(Sheet const& sheet, DocumentKey const& key)
{
    bool const isReadFurtherDown = m_documentKey && m_documentKey->id == sheet.id
        && !textView().scrollOrigin().isNull();
    if (!isReadFurtherDown || !isLong(sheet))
        return false;
    if (m_change.key == key)
        return true;
    auto const finish = [this, sheet, key](Rendering rendering) {
        m_change = {};
        rebuild(sheet, key, std::move(rendering));
        update(sheet);
    };
    m_change = { key, m_executor.detach(renderingOf(sheet), finish) };
    return true;
}

DocumentKey NativeReader::keyOf(Sheet const& sheet) const
{
    DocumentKey key { sheet.id, sheet.source, {}, m_store.textSize, sheet.interpretation };
    for (auto const& [reference, image] : sheet.images.asKeyValueRange())
        key.images.append({ reference, image.fingerprint });
    return key;
}

void NativeReader::rebuild(Sheet const& sheet, DocumentKey const& key, std::optional<Rendering> rendering)
{
    auto& view = textView();
    m_change = {};
    if (!std::exchange(m_isPlaceStored, false) && m_documentKey)
        storePlace();
    view.onScroll = nullptr;
    m_restTask.end();
    auto const wasWhole = !std::exchange(view.completeText, nullptr);
    auto old = std::exchange(m_documentKey, key);
    auto [document, isWhole] = rendering ? Made { makeDocument(std::move(*rendering)) } : documentFor(sheet, key);
    auto shown = view.show(std::move(document));
    view.setSelection({});
    // A place further down depends on all of the text above it.
    m_awaitsPlace = !isWhole && !m_store.scrollPositions.value(sheet.id).isNull();
    if (!m_awaitsPlace)
        restorePlace(sheet.id);
    else
        view.setScrollOrigin({});
    if (!isWhole)
        completeLater(sheet);
    // A sheet that is only rendered again will not come back as it was.
    if (old && old->id != sheet.id && wasWhole)
        keep({ std::move(*old), std::move(shown) });
}

NativeReader::Made NativeReader::documentFor(Sheet const& sheet, DocumentKey const& key)
{
    auto const fonts = FontSet::ofDesktop();
    auto const isSame = [&](Kept const& kept) { return kept.key == key && kept.document->layout().fonts() == fonts; };
    if (auto const known = std::ranges::find_if(m_kept, isSame); known != m_kept.end()) {
        auto document = std::move(known->document);
        m_kept.erase(known);
        return { std::move(document) };
    }
    double const textSize = m_store.textSize;
    if (sheet.shortcuts) {
        ReaderDocument::Shortcuts shortcuts { *sheet.shortcuts, sheet.images, textSize };
        auto const& view = textView();
        return { std::make_unique<ReaderDocument>(std::move(shortcuts), view.textWidth(), fonts, view.colors()) };
    }
    auto const& [parsed, title, images] = std::tie(sheet.parsed, sheet.title, sheet.images);
    if (!parsed)
        return { makeDocument({ MarkdownRenderer::render(sheet.source, title, images, textSize), textSize }) };
    if (!isLong(sheet))
        return { makeDocument({ MarkdownRenderer::render(*parsed, title, images, textSize), textSize }) };
    auto [rendered, isWhole] = MarkdownRenderer::renderBeginning(
        *parsed, title, images, textSize, beginningOfLongSheet);
    return { makeDocument({ std::move(rendered), textSize }), isWhole };
}

std::unique_ptr<ReaderDocument> NativeReader::makeDocument(Rendering rendering) const
{
    auto const& view = textView();
    return std::make_unique<ReaderDocument>(
        std::move(rendering.rendered), rendering.codeWidth, view.textWidth(), FontSet::ofDesktop(), view.colors());
}

std::function<NativeReader::Rendering()> NativeReader::renderingOf(Sheet const& sheet) const
{
    return [parsed = *sheet.parsed, title = sheet.title, images = sheet.images, textSize = m_store.textSize.value()] {
        return Rendering(MarkdownRenderer::render(parsed, title, images, textSize), textSize);
    };
}

// On a worker, or at once if the view asks for it before.
void NativeReader::completeLater(Sheet const& sheet)
{
    auto const render = renderingOf(sheet);
    auto const finish = [this, id = sheet.id](Rendering rendering) {
        m_restTask.end();
        textView().completeText = nullptr;
        auto const awaitsPlace = std::exchange(m_awaitsPlace, false);
        textView().extend(makeDocument(std::move(rendering)));
        if (awaitsPlace)
            restorePlace(id);
    };
    m_restTask = m_executor.detach(render, finish);
    textView().completeText = [render, finish] { finish(render()); };
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
    if (m_awaitsPlace)
        return;
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
    m_restTask.end();
    m_change = {};
    m_awaitsPlace = false;
    textView().completeText = nullptr;
    textView().onScroll = nullptr;
    m_documentKey.reset();
    m_kept.clear();
    m_places.clear();
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
