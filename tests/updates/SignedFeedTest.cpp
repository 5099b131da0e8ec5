#include "updates/feed/SignedFeed.h"
#include "support/FeedSigner.h"
#include "support/Test.h"
#include "updates/feed/CheckSchedule.h"

#include <functional>

namespace Quillory {
namespace {

QByteArray const document = "<releases><release version='2'/></releases>";

SignedFeed::Expected expected(FeedSigner const& signer = FeedSigner())
{
    return { *MinisignKey::fromText(signer.publicKey()), "releases.xml", 1000, 1000 };
}

TEST(SignedFeed, Is_read_only_where_all_of_its_signature_holds)
{
    FeedSigner const signer;
    auto const signature = signer.sign(document, 1000);
    auto const lines = signature.split('\n');
    auto const withLine = [&](qsizetype place, QByteArray const& line) {
        auto changed = lines;
        changed[place] = line;
        return changed.join('\n');
    };
    auto const newer = signer.sign("<releases/>", 2000).split('\n');
    struct Row {
        char const* name;
        QByteArray document, signature;
        std::optional<FeedFault> fault;
    };
    for (auto const& row :
        {
            Row { "as signed", document, signature, {} },
            Row { "with the other line ends", document, QByteArray(signature).replace("\n", "\r\n"), {} },
            Row { "with another untrusted comment", document, withLine(0, "untrusted comment: any"), {} },
            Row { "an altered byte", QByteArray(document).replace("'2'", "'3'"), signature, FeedFault::wrongSignature },
            Row { "a document that is none, unsigned", "<!DOCTYPE a>", signature, FeedFault::wrongSignature },
            Row { "a document that is none, signed", "<a/>", signer.sign("<a/>", 1000), FeedFault::notXml },
            Row { "a comment that was not signed", document, withLine(2, newer[2]), FeedFault::wrongSignature },
            Row { "both of another signature's", document, (lines.first(2) + newer.sliced(2)).join('\n'),
                FeedFault::wrongSignature },
            Row { "the other key", document, FeedSigner(2).sign(document, 1000), FeedFault::otherKey },
            Row { "the other key by our id", document,
                withLine(1, ("ED" + QByteArray(8, '\1') + QByteArray(64, '\2')).toBase64()),
                FeedFault::wrongSignature },
            Row { "no signature", document, "", FeedFault::noSignature },
            Row { "a page", document, "<html>not here</html>", FeedFault::noSignature },
            Row { "one that is cut off", document, signature.first(signature.size() - 9), FeedFault::noSignature },
            Row { "one line more", document, signature + "more\n", FeedFault::noSignature },
            Row { "not base64", document, withLine(1, "?" + lines[1].sliced(1)), FeedFault::noSignature },
            Row { "of the kind that hashes nothing", document,
                withLine(1, QByteArray::fromBase64(lines[1]).replace(0, 2, "Ed").toBase64()), FeedFault::noSignature },
            Row { "endless", document, QByteArray(5000, '\n'), FeedFault::noSignature },
            Row { "another file's", document, signer.sign(document, 1000, "other.xml"), FeedFault::otherFile },
            Row { "without a time", document, signer.signWithComment(document, "file:releases.xml"),
                FeedFault::otherFile },
            Row { "older", document, signer.sign(document, 999), FeedFault::older },
            Row { "tomorrow's", document, signer.sign(document, 1000 + 86'401), FeedFault::stillToCome },
            Row { "too large", QByteArray(ReleaseFeed::mostBytes + 1, ' '), signature, FeedFault::tooLarge },
        }) {
        auto const feed = SignedFeed::read(row.document, row.signature, expected());
        EXPECT_EQ(feed ? std::nullopt : std::optional(feed.error()), row.fault) << row.name;
        EXPECT_TRUE(!feed || (feed->time == 1000 && feed->feed.releases.size() == 1)) << row.name;
    }
}

// Made by minisign 0.11.
TEST(SignedFeed, Signatures_are_those_of_the_usual_tool)
{
    auto const key = MinisignKey::fromText("RWSa5wNwc2PcUTPFsjxyuPGgSmWMfntVTHhxLXY2qcovPt4/9e90sle0");
    auto const signature = MinisignSignature::fromText(
        "untrusted comment: signature from minisign secret key\n"
        "RUSa5wNwc2PcUV/XV5TWeRE5/oDf6lw+AfzbTw9DZtHZ3B39bi4jJH3a405osPXOERxrOyNIKgS9/LF8fkkkKWc9uxBYYO2lvws=\n"
        "trusted comment: timestamp:1795476483\tfile:releases.xml\thashed\n"
        "azCySLeX/yKZP5mnpLioNjD0FIKssioNOgr8KrdcPsOoAeMpVA7m/fzcKYhvD6FYkYTSWVZAVr8ivE3SYgD2Bg==\n");
    ASSERT_TRUE(key && signature);
    EXPECT_TRUE(signature->verify(document, *key));
    EXPECT_EQ(signature->fileName(), "releases.xml");
    EXPECT_GT(signature->time(), 1'700'000'000);
}

TEST(MinisignKey, Is_told_in_one_line_or_as_a_file)
{
    auto const line = FeedSigner().publicKey();
    EXPECT_TRUE(MinisignKey::fromText(line));
    EXPECT_TRUE(MinisignKey::fromText("untrusted comment: ours\n" + line + "\n"));
    for (auto const& text : { QByteArray(), QByteArray("RW"), line.chopped(4), line + "AAAA", "x" + line.sliced(1) })
        EXPECT_FALSE(MinisignKey::fromText(text)) << text.toStdString();
}

TEST(CheckSchedule, Is_about_once_a_day_by_the_wall_clock)
{
    auto const now = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    EXPECT_EQ(CheckSchedule::untilDue({}, now), 0s);
    EXPECT_EQ(CheckSchedule::untilDue(now, now), 24h);
    EXPECT_EQ(CheckSchedule::untilDue(now.addSecs(-3600), now), 23h);
    EXPECT_EQ(CheckSchedule::untilDue(now.addDays(-1), now), 0s);
    EXPECT_EQ(CheckSchedule::untilDue(now.addDays(-40), now), 0s);
    EXPECT_EQ(CheckSchedule::untilDue(now.addDays(400), now), 24h) << "a clock that was wrong stops nothing";
}

}
}
