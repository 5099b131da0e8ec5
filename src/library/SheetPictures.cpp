#include "library/SheetPictures.h"

#include "library/ForeignBytes.h"
#include "library/LibraryReference.h"
#include "text/FileNames.h"
#include "text/Graphemes.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QHashSeed>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

// Of files that wait to be decoded.
constexpr qint64 mostBytesUnderWay = qint64 { 64 } << 20U;

std::uint64_t fingerprintOf(QByteArray const& bytes)
{
    return qHashBits(bytes.constData(), static_cast<std::size_t>(bytes.size()), QHashSeed::globalSeed());
}

QString extensionOf(QByteArray const& path)
{
    auto const name = FileName::fromBytes(path.sliced(path.lastIndexOf('/') + 1)).text;
    return pathExtension(name).toString().toLower();
}

QString warningOf(QString const& reference)
{
    return QCoreApplication::translate("Library",
        "Icon %1: use a readable, static 256 × 256 PNG inside the library, no larger than 256 KB. "
        "Showing a placeholder.")
        .arg(firstGraphemes(reference, SheetPictures::shownReferenceLength));
}

QStringList inOrder(QStringList references)
{
    references.removeDuplicates();
    std::ranges::stable_sort(references, [](QString const& a, QString const& b) { return compareText(a, b) < 0; });
    return references;
}

}

SheetPictures::SheetPictures(OpenFolder const& folder, Sandbox& sandbox, QList<Sheet> const& previous,
    LoadMemory const& earlier, std::uint64_t limit)
    : m_folder(folder)
    , m_sandbox(sandbox)
    , m_markdownImages { .limit = markdownImageLimit,
        .request = [](QByteArray bytes) { return ForeignBytes::thumbnail(std::move(bytes), markdownImageSize); },
        .earlier = earlier.thumbnails }
    , m_icons { .limit = iconLimit,
        .request = [](QByteArray bytes) { return ForeignBytes::icon(std::move(bytes), iconSide); },
        .earlier = earlier.icons }
    , m_budget(limit, [this](std::size_t number) { letGo(number); })
{
    for (auto const& sheet : previous) {
        auto& use = sheet.shortcuts ? m_icons : m_markdownImages;
        for (auto const& image : sheet.images)
            use.previous.insert(image.fingerprint, image);
    }
}

void SheetPictures::askFor(Sheet const& sheet, Arrivals::Time until, std::stop_token const& ended)
{
    if (sheet.parsed) {
        for (auto const& reference : inOrder(sheet.parsed->imageSources().values()))
            askFor(reference, m_markdownImages, until, ended);
    } else if (sheet.shortcuts) {
        for (auto const& reference : inOrder(sheet.shortcuts->icons()))
            askFor(reference, m_icons, until, ended);
    }
}

void SheetPictures::askFor(QString const& reference, Use& use, Arrivals::Time until, std::stop_token const& ended)
{
    // What is left out when time runs out is asked for by the next load.
    if (use.ofReference.contains(reference) || m_bytesUnderWay > mostBytesUnderWay)
        return;
    auto& content = use.ofReference[reference];
    auto const isIcon = &use == &m_icons;
    if (isIcon && reference.toUtf8().size() > iconReferenceLimit)
        return;
    auto const path = resolveLibraryReference(reference, m_folder);
    if (!path || (isIcon && extensionOf(*path) != QLatin1StringView("png")))
        return;
    content = contentAt(*path, use);
    while (m_bytesUnderWay > mostBytesUnderWay && takeNext(until, ended)) { }
}

std::shared_ptr<SheetPictures::Content> SheetPictures::contentAt(QByteArray const& path, Use& use)
{
    if (auto const known = use.ofPath.constFind(path); known != use.ofPath.cend())
        return *known;
    auto& ofPath = use.ofPath[path];
    if (auto const bytes = readLibraryFile(path, m_folder, use.limit))
        ofPath = begin(*bytes, use);
    return ofPath;
}

std::shared_ptr<SheetPictures::Content> SheetPictures::begin(QByteArray const& bytes, Use& use)
{
    auto const fingerprint = fingerprintOf(bytes);
    auto& content = use.ofFingerprint[fingerprint];
    if (content)
        return content;
    content = std::make_shared<Content>(Content { .fingerprint = fingerprint });
    auto const number = m_contents.size();
    m_contents.push_back(content);
    if (auto const made = use.previous.constFind(fingerprint); made != use.previous.cend()) {
        content->image = *made;
        charge(number);
    } else if (use.earlier.refused.contains(fingerprint)) {
        content->isRefused = true;
    } else if (m_budget.admits(number)) {
        content->job = use.earlier.underWay.value(fingerprint);
        if (!content->job) {
            m_hasStarted = content->isFresh = true;
            ++m_fresh;
            content->job = m_sandbox.start(use.request(bytes));
        }
        ++m_underWay;
        m_bytesUnderWay += bytes.size();
        m_arrivals.expect(*content->job, number);
    }
    return content;
}

void SheetPictures::wait(Arrivals::Time until, std::stop_token const& ended)
{
    while (takeNext(until, ended)) { }
}

void SheetPictures::waitForFresh(Arrivals::Time until, std::stop_token const& ended)
{
    while (m_fresh > 0 && takeNext(until, ended)) { }
}

bool SheetPictures::takeNext(Arrivals::Time until, std::stop_token const& ended)
{
    auto const number = m_underWay > 0 ? m_arrivals.next(until, ended) : std::nullopt;
    if (number)
        finish(*number);
    return number.has_value();
}

void SheetPictures::finish(std::size_t number)
{
    auto& content = *m_contents[number];
    --m_underWay;
    m_fresh -= content.isFresh ? 1U : 0U;
    auto const job = std::exchange(content.job, nullptr);
    if (!job)
        return; // it no longer fits
    m_bytesUnderWay -= job->request().bytes.size();
    auto const answer = *job->answer();
    auto const picture = answer ? *std::static_pointer_cast<ForeignBytes::Picture const>(*answer) : std::nullopt;
    content.isRefused = !picture && (answer || answer.error() != SandboxFailure::unavailable);
    if (!picture)
        return;
    content.image = PreparedImage { *picture, content.fingerprint };
    charge(number);
}

void SheetPictures::charge(std::size_t number)
{
    m_budget.charge(number, static_cast<std::uint64_t>(m_contents[number]->image->cgImage.sizeInBytes()));
}

void SheetPictures::letGo(std::size_t number)
{
    m_contents[number]->image.reset();
    if (auto const job = std::exchange(m_contents[number]->job, nullptr))
        m_bytesUnderWay -= job->request().bytes.size();
}

QMap<QString, PreparedImage> SheetPictures::prepareMarkdownImages(ParsedMarkdown const& parsed) const
{
    QMap<QString, PreparedImage> images;
    for (auto const& reference : parsed.imageSources()) {
        if (auto const content = m_markdownImages.ofReference.value(reference); content && content->image)
            images.insert(reference, *content->image);
    }
    return images;
}

PreparedIcons SheetPictures::prepareIcons(ShortcutSheet const& sheet) const
{
    PreparedIcons icons;
    for (auto const& reference : inOrder(sheet.icons())) {
        auto const content = m_icons.ofReference.value(reference);
        if (content && content->image)
            icons.images.insert(reference, *content->image);
        else if (!content || !content->job) // else nothing can be said of it yet
            icons.warnings.append(warningOf(reference));
    }
    return icons;
}

void SheetPictures::remember(LoadMemory& memory) const
{
    remember(m_markdownImages, memory.thumbnails);
    remember(m_icons, memory.icons);
}

void SheetPictures::remember(Use const& use, LoadMemory::Pictures& pictures)
{
    for (auto const& content : use.ofFingerprint) {
        if (content->job)
            pictures.underWay.insert(content->fingerprint, content->job);
        else if (content->isRefused)
            pictures.refused.insert(content->fingerprint);
    }
}

}
