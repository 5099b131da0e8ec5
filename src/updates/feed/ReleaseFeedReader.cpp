#include "updates/feed/ReleaseFeedReader.h"

#include <algorithm>
#include <utility>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

// More than any package of ours will have.
constexpr std::int64_t largestArtifact = std::int64_t { 1 } << 30;

constexpr int sha256Bytes = 32;

QString attribute(QXmlStreamReader const& xml, QLatin1StringView name)
{
    return xml.attributes().value(name).toString();
}

Release::Urgency urgencyOf(QString const& word)
{
    using enum Release::Urgency;
    return word == "low"_L1 ? low : word == "high"_L1 ? high : word == "critical"_L1 ? critical : medium;
}

// The moment may be told in seconds, else it is a day or a moment in words of the standard.
QDateTime dateOf(QXmlStreamReader const& xml)
{
    bool isNumber = false;
    auto const seconds = attribute(xml, "timestamp"_L1).toUInt(&isNumber);
    if (isNumber)
        return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    return QDateTime::fromString(attribute(xml, "date"_L1), Qt::ISODate);
}

// Absent unless it is `sha256Bytes` bytes in hexadecimal digits.
std::optional<QByteArray> sha256Of(QString const& text)
{
    auto const digits = text.trimmed().toLatin1().toLower();
    auto const bytes = QByteArray::fromHex(digits);
    return bytes.size() == sha256Bytes && bytes.toHex() == digits ? std::optional(bytes) : std::nullopt;
}

}

std::expected<ReleaseFeed, FeedFault> ReleaseFeedReader::read()
{
    if (findRoot())
        readReleases();
    while (!m_fault && !m_xml.atEnd())
        m_xml.readNext(); // nothing may follow the root
    if (m_fault)
        return std::unexpected(*m_fault);
    if (m_xml.hasError())
        return std::unexpected(FeedFault::notXml);
    return std::move(m_feed);
}

// A document type stands before the root or nowhere.
bool ReleaseFeedReader::findRoot()
{
    while (!m_xml.atEnd() && m_xml.readNext() != QXmlStreamReader::StartElement) {
        if (m_xml.isDTD())
            refuse(FeedFault::entities);
    }
    if (!m_fault && !isIn("releases"_L1))
        refuse(FeedFault::notXml);
    return !m_fault;
}

void ReleaseFeedReader::readReleases()
{
    while (m_xml.readNextStartElement()) {
        if (!isIn("release"_L1))
            m_xml.skipCurrentElement();
        else if (m_feed.releases.size() >= ReleaseFeed::mostReleases)
            refuse(FeedFault::tooLarge);
        else
            readRelease();
    }
}

void ReleaseFeedReader::readRelease()
{
    auto const version = ReleaseVersion::fromText(attribute(m_xml, "version"_L1));
    if (!version)
        return refuse(FeedFault::notAVersion);
    Release release { .version = *version,
        .date = dateOf(m_xml),
        .urgency = urgencyOf(attribute(m_xml, "urgency"_L1)),
        .kind = attribute(m_xml, "type"_L1) == "development"_L1 ? Release::Kind::development : Release::Kind::stable,
        .notes = {},
        .issues = {},
        .artifacts = {} };
    m_noteCharacters = 0;
    while (m_xml.readNextStartElement()) {
        if (isIn("description"_L1) && !isTranslation())
            readNotes(release.notes);
        else if (isIn("issues"_L1))
            readIssues(release);
        else if (isIn("artifacts"_L1))
            readArtifacts(release);
        else
            m_xml.skipCurrentElement();
    }
    m_feed.releases.append(std::move(release));
}

void ReleaseFeedReader::readArtifacts(Release& release)
{
    while (m_xml.readNextStartElement()) {
        if (isIn("artifact"_L1) && attribute(m_xml, "type"_L1) == "binary"_L1)
            readArtifact(release);
        else
            m_xml.skipCurrentElement();
    }
}

void ReleaseFeedReader::readArtifact(Release& release)
{
    ReleaseArtifact artifact;
    artifact.platform = attribute(m_xml, "platform"_L1);
    std::optional<QByteArray> sha256;
    while (m_xml.readNextStartElement()) {
        auto const type = attribute(m_xml, "type"_L1);
        if (isIn("location"_L1))
            artifact.location = QUrl(m_xml.readElementText().trimmed(), QUrl::StrictMode);
        else if (isIn("checksum"_L1) && type == "sha256"_L1)
            sha256 = sha256Of(m_xml.readElementText());
        else if (isIn("size"_L1) && type == "download"_L1)
            artifact.size = m_xml.readElementText().trimmed().toLongLong();
        else
            m_xml.skipCurrentElement();
    }
    if (m_xml.hasError())
        return;
    bool const hasAddress = artifact.location.isValid() && !artifact.location.host().isEmpty();
    if (!sha256 || !hasAddress || artifact.size < 1 || artifact.size > largestArtifact)
        return refuse(FeedFault::badArtifact);
    artifact.sha256 = *std::move(sha256);
    release.artifacts.append(std::move(artifact));
}

void ReleaseFeedReader::readIssues(Release& release)
{
    while (m_xml.readNextStartElement()) {
        if (isIn("issue"_L1)) {
            bool const isVulnerability = attribute(m_xml, "type"_L1) == "cve"_L1;
            release.issues.append({ m_xml.readElementText().simplified(), isVulnerability });
        } else {
            m_xml.skipCurrentElement();
        }
    }
}

void ReleaseFeedReader::readNotes(ReleaseNotes& notes)
{
    using enum ReleaseNotes::Form;
    while (m_xml.readNextStartElement()) {
        if (isTranslation())
            m_xml.skipCurrentElement();
        else if (isIn("p"_L1))
            readBlock(notes, paragraph);
        else if (isIn("ul"_L1) || isIn("ol"_L1))
            readList(notes, isIn("ul"_L1) ? bullet : numbered);
        else
            m_xml.skipCurrentElement();
    }
}

void ReleaseFeedReader::readList(ReleaseNotes& notes, ReleaseNotes::Form form)
{
    while (m_xml.readNextStartElement()) {
        if (isIn("li"_L1) && !isTranslation())
            readBlock(notes, form);
        else
            m_xml.skipCurrentElement();
    }
}

void ReleaseFeedReader::readBlock(ReleaseNotes& notes, ReleaseNotes::Form form)
{
    ReleaseNotes::Block block { form, {} };
    readText(block, ReleaseNotes::Style::plain);
    if (!block.spans.isEmpty() && notes.blocks.size() < ReleaseNotes::mostBlocks)
        notes.blocks.append(std::move(block));
}

// Styles don't nest.
void ReleaseFeedReader::readText(ReleaseNotes::Block& block, ReleaseNotes::Style style)
{
    using enum ReleaseNotes::Style;
    while (!m_xml.atEnd() && m_xml.readNext() != QXmlStreamReader::EndElement) {
        if (m_xml.isCharacters())
            add(block, style);
        else if (m_xml.isStartElement() && style == plain && (isIn("em"_L1) || isIn("code"_L1)))
            readText(block, isIn("em"_L1) ? emphasis : code);
        else if (m_xml.isStartElement())
            m_xml.skipCurrentElement();
    }
}

// Line breaks and blanks in a row are the document's own layout.
void ReleaseFeedReader::add(ReleaseNotes::Block& block, ReleaseNotes::Style style)
{
    auto const raw = m_xml.text();
    auto text = raw.toString().simplified();
    if (raw.isEmpty() || m_noteCharacters + text.size() > ReleaseNotes::mostCharacters)
        return;
    bool const isFirst = block.spans.isEmpty();
    if (raw.front().isSpace() && !isFirst && !text.isEmpty())
        text.prepend(u' ');
    if (raw.back().isSpace())
        text.append(u' ');
    if (text.isEmpty() || (isFirst && text == " "_L1))
        return;
    m_noteCharacters += text.size();
    block.spans.append({ std::move(text), style });
}

bool ReleaseFeedReader::isTranslation() const
{
    return m_xml.attributes().hasAttribute("xml:lang"_L1);
}

// Ends the pass: every loop ends with the reader.
void ReleaseFeedReader::refuse(FeedFault fault)
{
    if (!m_fault)
        m_fault = fault;
    m_xml.raiseError();
}

}
