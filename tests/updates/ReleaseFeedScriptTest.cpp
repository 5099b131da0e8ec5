#include "support/FeedSigner.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"
#include "updates/feed/SignedFeed.h"

#include <QCryptographicHash>
#include <QProcess>

namespace Quillory {
namespace {

class ReleaseFeedScript : public Test {
protected:
    QString makePackage(QString const& version)
    {
        auto const name = "package-" + version.toLatin1();
        folder.makeFolder(name);
        folder.makeFolder(name + "/DEBIAN");
        folder.write(name + "/DEBIAN/control",
            "Package: quillory\nVersion: " + version.toLatin1()
                + "\nArchitecture: amd64\nMaintainer: A <a@example.org>\nDescription: a test\n");
        EXPECT_EQ(run(u"dpkg-deb"_s, { u"--build"_s, folder.path(name), folder.path(name + ".deb") }), 0);
        return folder.path(name + ".deb");
    }
    int run(QString const& program, QStringList const& arguments, QByteArray const& input = {})
    {
        QProcess process;
        process.start(program, arguments);
        process.write(input);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished());
        said = process.readAllStandardOutput();
        return process.exitCode();
    }
    int add(QString const& package, QByteArray const& notes, QString const& urgency = u"medium"_s)
    {
        return run(QStringLiteral(QUILLORY_RELEASE_FEED),
            { u"--into"_s, feed, package, u"https://example.org/%1"_s.arg(package.section(u'/', -1)), urgency }, notes);
    }

    TemporaryFolder folder;
    QString const feed = folder.path("releases.xml");
    QByteArray said;
};

TEST_F(ReleaseFeedScript, Makes_a_feed_that_the_program_reads_once_it_is_signed)
{
    auto const newer = makePackage(u"1:1.2.0-1"_s);
    EXPECT_EQ(add(makePackage(u"1.1~rc.1"_s), "Older"), 0);
    EXPECT_EQ(add(newer, "Faster <tables> & all\nof it\n\n- one\n- two\n\nThe end", u"high"_s), 0);
    EXPECT_THAT(said.toStdString(), HasSubstr("minisign -S -H"));
    EXPECT_NE(add(newer, "", u"now"_s), 0);
    EXPECT_NE(add(makePackage(u"1.0+git"_s), ""), 0);

    auto const document = folder.read("releases.xml");
    auto const read = SignedFeed::read(document, FeedSigner().sign(document, 1),
        { *MinisignKey::fromText(FeedSigner().publicKey()), "releases.xml", 0 });
    ASSERT_TRUE(read);
    ASSERT_EQ(read->feed.releases.size(), 2);
    EXPECT_EQ(read->feed.releases[1].version.text(), u"1.1~rc.1");
    auto const offer = read->feed.newestAfter(*ReleaseVersion::fromText(u"1.0"_s), u"x86_64-linux-gnu"_s);
    ASSERT_TRUE(offer);
    EXPECT_EQ(offer->version.text(), u"1.2.0"_s);
    EXPECT_EQ(offer->urgency, Release::Urgency::high);
    QStringList notes;
    for (auto const& block : offer->notes.blocks)
        notes << block.spans.value(0).text.trimmed();
    EXPECT_EQ(notes, (QStringList { u"Faster <tables> & all of it"_s, u"one"_s, u"two"_s, u"The end"_s }));
    auto const bytes = folder.read("package-1:1.2.0-1.deb");
    EXPECT_EQ(offer->artifacts[0].size, bytes.size());
    EXPECT_EQ(offer->artifacts[0].sha256, QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
}

}
}
