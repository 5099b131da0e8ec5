#include "updates/feed/ReleaseFeed.h"
#include "support/Cases.h"

#include <algorithm>
#include <map>

namespace Quillory {
namespace {

QString const sum = u"00112233445566778899aabbccddeeff00112233445566778899AABBCCDDEEFF"_s;

QString release(QString const& version, QString const& rest = {}, QString const& platform = u"this"_s)
{
    return uR"(<release version="%1" %2><artifacts><artifact type="source"/><artifact type="binary" platform="%3">
      <location>https://example.org/%1.deb</location><checksum type="sha256">%4</checksum>
      <size type="download">12</size></artifact></artifacts></release>)"_s.arg(version, rest, platform, sum);
}

std::expected<ReleaseFeed, FeedFault> read(QString const& releases)
{
    return ReleaseFeed::read("<releases>" + releases.toUtf8() + "</releases>");
}

QString outcome(std::expected<ReleaseFeed, FeedFault> const& feed)
{
    static std::map<FeedFault, QString> const names { { FeedFault::notXml, u"notXml"_s },
        { FeedFault::entities, u"entities"_s }, { FeedFault::tooLarge, u"tooLarge"_s },
        { FeedFault::notAVersion, u"notAVersion"_s }, { FeedFault::badArtifact, u"badArtifact"_s } };
    if (!feed)
        return names.at(feed.error());
    QStringList versions;
    for (auto const& each : feed->releases)
        versions << each.version.text();
    return versions.join(u' ');
}

TEST(ReleaseVersion, Is_ordered_as_it_is_told)
{
    std::vector<std::pair<ReleaseVersion, int>> versions;
    int place = 0;
    forEachCase(u"versions, rising; equal ones in one row"_s, [&](QJsonValue const& row) {
        for (auto const text : row.toArray())
            versions.emplace_back(ReleaseVersion::fromText(text.toString()).value(), place);
        ++place;
    });
    for (auto const& [left, leftPlace] : versions) {
        for (auto const& [right, rightPlace] : versions)
            EXPECT_TRUE((left <=> right) == (leftPlace <=> rightPlace))
                << left.text().toStdString() << ' ' << right.text().toStdString();
    }
    forEachCase(
        u"no versions"_s, [](QJsonValue const& row) { EXPECT_FALSE(ReleaseVersion::fromText(row.toString())); });
}

TEST(ReleaseFeed, Is_read_or_refused_as_a_whole)
{
    forEachCase(u"feeds"_s, [](QJsonValue const& row) {
        auto document = row[0].toString();
        document.replace(u"%1"_s, release(u"1.0"_s)).replace(u"%2"_s, release(u"2"_s));
        auto bytes = document.toUtf8();
        EXPECT_EQ(outcome(ReleaseFeed::read(bytes.replace("%FF", "\xFF"))), row[1].toString());
    });
    forEachCase(u"artifacts"_s, [](QJsonValue const& row) {
        auto const feed = read(uR"(<release version="1"><artifacts><artifact type="binary"><location>%1</location>
            <size type="installed">9</size><size type="download">%2</size><checksum type="blake2b">x</checksum>
            <checksum type="sha256">%3</checksum></artifact></artifacts></release>)"_s.arg(
            row[0].toString(), row[1].toString(), row[2].toString().replace(u"%sum"_s, sum)));
        EXPECT_EQ(outcome(feed), row[3].toBool() ? u"1"_s : u"badArtifact"_s);
    });
}

TEST(ReleaseFeed, Is_bounded)
{
    EXPECT_EQ(read(u"<release version='1'/>"_s.repeated(1000))->releases.size(), 1000);
    EXPECT_EQ(outcome(read(u"<release version='1'/>"_s.repeated(1001))), u"tooLarge"_s);
    EXPECT_EQ(outcome(read(QString(ReleaseFeed::mostBytes, u' '))), u"tooLarge"_s);
    EXPECT_EQ(outcome(read(u"<a>"_s.repeated(300'000))), u"notXml"_s);
    auto const notes = read(
        u"<release version='1'><description>%1</description></release>"_s.arg(u"<p>a few words</p>"_s.repeated(5000)))
                           ->releases.first()
                           .notes;
    EXPECT_EQ(notes.blocks.size(), ReleaseNotes::mostBlocks);
}

TEST(ReleaseFeed, Tells_what_a_release_is_about)
{
    auto const feed = read(
        uR"(<release version="1.2-rc" timestamp="1700000000" date="2001-01-01" urgency="critical" type="development">
      <description>
        <p>Pins <em>follow</em>
           the
           library, <code>a &lt; b</code>.<b>bold</b></p>
        <p xml:lang="de">Nadeln</p><p> </p>
        <ul><li>one</li><li xml:lang="de">eins</li><p>no item</p></ul><ol><li>first<em>of<code>all</code></em></li></ol>
        <script>alert(1)</script>
      </description><description xml:lang="de"><p>alles</p></description>
      <issues><issue url="https://example.org/7">#7</issue><issue type="cve">CVE-1</issue><other/></issues></release>
      <release version="1" date="2026-11-23"/>)"_s);
    ASSERT_TRUE(feed);
    auto const& first = feed->releases[0];
    using enum ReleaseNotes::Style;
    using Spans = QList<ReleaseNotes::Span>;
    EXPECT_EQ(first.notes.blocks,
        (QList<ReleaseNotes::Block> {
            { ReleaseNotes::Form::paragraph,
                Spans { { u"Pins "_s, plain }, { u"follow"_s, emphasis }, { u" the library, "_s, plain },
                    { u"a < b"_s, code }, { u"."_s, plain } } },
            { ReleaseNotes::Form::bullet, Spans { { u"one"_s, plain } } },
            { ReleaseNotes::Form::numbered, Spans { { u"first"_s, plain }, { u"of"_s, emphasis } } } }));
    EXPECT_EQ(first.date.toSecsSinceEpoch(), 1'700'000'000) << "the moment is more exact than the day";
    EXPECT_EQ(first.urgency, Release::Urgency::critical);
    EXPECT_EQ(first.kind, Release::Kind::development);
    ASSERT_EQ(first.issues.size(), 2);
    EXPECT_EQ(first.issues[0].name, u"#7"_s);
    EXPECT_TRUE(first.issues[1].isVulnerability && !first.issues[0].isVulnerability);
    EXPECT_EQ(feed->releases[1].date.date(), QDate(2026, 11, 23));
}

TEST(ReleaseFeed, Offers_the_newest_that_is_meant_for_the_user_and_the_machine)
{
    auto const feed = read(release(u"1.1"_s) + release(u"1.3"_s) + release(u"1.2"_s)
        + release(u"1.4"_s, u"type='development'"_s) + release(u"2.0-rc.1"_s) + release(u"3"_s, {}, u"other"_s));
    forEachCase(u"offers"_s, [&](QJsonValue const& row) {
        auto const offered = feed->newestAfter(*ReleaseVersion::fromText(row[0].toString()), u"this"_s);
        EXPECT_EQ(offered ? offered->version.text() : QString(), row[1].toString());
    });
    EXPECT_FALSE(feed->newestAfter(*ReleaseVersion::fromText(u"1"_s), u"none"_s));
}

}
}
