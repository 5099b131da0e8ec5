#include "updates/UpdaterDesk.h"

namespace Quillory {
namespace {

using Choice = UpdateWindow::Choice;

// From the user's wish to the offer.
void findAsUser(UpdaterDesk& desk)
{
    desk.updater->checkForUpdates();
    EXPECT_EQ(desk.until(u"attention"_s), (QStringList { u"will show 2.0"_s, u"[2.0 for 1.0]"_s, u"attention"_s }));
}

QStringList const ending { u"session ends"_s, u"end"_s };

struct Bad {
    char const* name;
    std::function<void(UpdaterDesk&)> arrange;
    QString sentence;
    bool stalls = false;
};

// The user asks, sees why it failed, and asks again once all is well.
TEST(FeedUpdater, A_bad_feed_is_told_to_who_asked_and_leaves_nothing)
{
    FeedSigner const stranger(2);
    QByteArray const document = "<releases><release version='2'/></releases>";
    auto const answers = [](QByteArray const& path, QByteArray const& bytes, bool ends = true) {
        return [=](UpdaterDesk& desk) { desk.server.answers[path] = { bytes, ends }; };
    };
    auto const feed = [](QByteArray const& bytes) { return [=](UpdaterDesk& desk) { desk.publishDocument(bytes); }; };
    auto const html = LoopbackServer::answer("200 OK", "<html>Sign in</html>");
    auto const missing = LoopbackServer::answer("404 Not Found", document);
    for (auto const& row : {
             Bad { "not XML", feed("releases: none"), u"can't be read"_s },
             Bad { "truncated before it was signed", feed(document.chopped(5)), u"can't be read"_s },
             Bad { "entities", feed("<!DOCTYPE a [<!ENTITY b 'b'>]><releases>&b;</releases>"), u"document type"_s },
             Bad { "many releases",
                 feed("<releases>" + QByteArray("<release version='1'/>").repeated(2000) + "</releases>"),
                 u"too large"_s },
             Bad { "a million releases",
                 feed("<releases>" + QByteArray("<release version='1'/>").repeated(1'000'000) + "</releases>"),
                 u"too large"_s },
             Bad { "no version", feed("<releases><release version='new'/></releases>"), u"version that is none"_s },
             Bad { "no signature", [](auto& desk) { desk.server.answers.remove("/releases.xml.minisig"); },
                 u"does not have the file"_s },
             Bad { "a page for a signature", answers("/releases.xml.minisig", html), u"no valid signature"_s },
             Bad { "the wrong key",
                 [&](auto& desk) { desk.server.serve("/releases.xml.minisig", stranger.sign(document, 1)); },
                 u"somebody else"_s },
             Bad { "an altered byte", [&](auto& desk) { desk.server.serve("/releases.xml", document); },
                 u"not the one"_s },
             Bad { "a page for a feed", answers("/releases.xml", html), u"not the one"_s },
             Bad { "not found", answers("/releases.xml", missing), u"does not have the file"_s },
             Bad { "broken", answers("/releases.xml", LoopbackServer::answer("500 Oops", document)),
                 u"does not have the file"_s },
             Bad { "ends early", answers("/releases.xml", html.chopped(4)), u"ended early"_s },
             Bad { "not of the web", answers("/releases.xml.minisig", "220 mail\r\n"), u"ended early"_s },
             Bad { "says nothing", answers("/releases.xml", "", false), u"took too long"_s, true },
             Bad { "stops in the middle", answers("/releases.xml", html.chopped(4), false), u"took too long"_s, true },
             Bad { "unsafe redirect", [](auto& desk) { desk.server.redirect("/releases.xml", "http://example.org/"); },
                 u"not secure"_s },
             Bad { "file redirect", [](auto& desk) { desk.server.redirect("/releases.xml", "file:///etc/passwd"); },
                 u"not secure"_s },
             Bad { "endless redirect", [](auto& desk) { desk.server.redirect("/releases.xml", "/releases.xml"); },
                 u"not secure"_s },
         }) {
        SCOPED_TRACE(row.name);
        UpdaterDesk desk;
        row.arrange(desk);
        desk.updater->checkForUpdates();
        if (row.stalls) {
            desk.untilRequested(2);
            desk.pass(31s);
        }
        auto const told = desk.until(u"end"_s);
        ASSERT_EQ(told.size(), 4) << told.join(u", ").toStdString();
        EXPECT_TRUE(told[0].startsWith(u"failed: ") && told[0].contains(row.sentence)) << told[0].toStdString();
        EXPECT_EQ(told[1], u"[! "_s + told[0].sliced(8) + u']');
        EXPECT_EQ(told.sliced(2), ending);
        EXPECT_LE(desk.server.requests.size(), 7);
        EXPECT_EQ(desk.defaults.writes, QStringList { u"updateLastAttempt"_s });
        EXPECT_FALSE(desk.updater->lastUpdateCheckDate());
        desk.publish(desk.release(u"2.0"_s));
        findAsUser(desk);
    }
}

TEST(FeedUpdater, An_old_feed_is_not_taken_back_and_an_old_version_is_no_news)
{
    UpdaterDesk desk;
    desk.publish(desk.release(u"1.0.0"_s), UpdaterDesk::now - 50);
    desk.updater->checkForUpdates();
    EXPECT_EQ(desk.until(u"end"_s),
        (QStringList { u"nothing found"_s, u"[Quillory 1.0 is the newest version.]"_s } + ending));
    EXPECT_EQ(desk.updater->lastUpdateCheckDate()->toSecsSinceEpoch(), UpdaterDesk::now);
    desk.restart();
    desk.until(u"[closed]"_s);
    desk.publish(desk.release(u"2.0"_s), UpdaterDesk::now - 51);
    desk.updater->checkForUpdates();
    EXPECT_TRUE(desk.until(u"end"_s)[0].contains(u"older")) << "remembered across restarts";
    desk.publish(desk.release(u"2.0"_s), UpdaterDesk::now - 50);
    findAsUser(desk);
}

TEST(FeedUpdater, A_bad_package_is_told_and_removed)
{
    auto const redirect = [](QByteArray const& to) {
        return [=](UpdaterDesk& desk) { desk.server.redirect("/package.deb", to); };
    };
    for (auto const& row :
        {
            Bad {
                "shorter", [](auto& desk) { desk.server.serve("/package.deb", desk.package.chopped(1)); }, u"size"_s },
            Bad { "longer", [](auto& desk) { desk.server.serve("/package.deb", desk.package + "!"); }, u"too large"_s },
            Bad { "longer than it says",
                [](auto& desk) {
                    desk.server.answers["/package.deb"] = { "HTTP/1.0 200 OK\r\n\r\n" + desk.package + "!" };
                },
                u"too large"_s },
            Bad { "another",
                [](auto& desk) { desk.server.serve("/package.deb", QByteArray(desk.package).replace('a', 'b')); },
                u"not the one"_s },
            Bad { "missing", [](auto& desk) { desk.server.answers.remove("/package.deb"); }, u"does not have"_s },
            Bad { "ends early",
                [](auto& desk) {
                    desk.server.answers["/package.deb"] = { LoopbackServer::answer("200 OK", desk.package).chopped(9) };
                },
                u"ended early"_s },
            Bad { "stops in the middle",
                [](auto& desk) {
                    desk.server.answers["/package.deb"] = { LoopbackServer::answer("200 OK", desk.package).chopped(9),
                        false };
                },
                u"took too long"_s, true },
            Bad { "unsafe redirect", redirect("http://example.org/package.deb"), u"not secure"_s },
            Bad { "unsafe address",
                [](auto& desk) { desk.publish(desk.release(u"2.0"_s).replace(u"//127.0.0.1"_s, u"//example.org"_s)); },
                u"not secure"_s },
            Bad { "no place for it", [](auto& desk) { desk.folder.write("new", "a file"); }, u"can't be stored"_s },
        }) {
        SCOPED_TRACE(row.name);
        UpdaterDesk desk;
        row.arrange(desk);
        findAsUser(desk);
        desk.chosen(Choice::install);
        if (row.stalls) {
            desk.untilRequested(3);
            EXPECT_TRUE(desk.loop.runUntil([&] { return !desk.filesLeft().isEmpty(); }));
            desk.pass(61s);
        }
        auto const told = desk.until(u"end"_s);
        auto const failed = told.indexOf(QRegularExpression(u"failed: .*"_s + row.sentence + u".*"_s));
        ASSERT_GE(failed, 0) << told.join(u", ").toStdString();
        EXPECT_EQ(told.sliced(failed + 1), (QStringList { u"[! "_s + told[failed].sliced(8) + u']' } + ending));
        EXPECT_FALSE(told.contains(u"[installing]"));
        EXPECT_THAT(desk.filesLeft(), IsEmpty());
        EXPECT_THAT(desk.opener.calls, IsEmpty());
    }
}

TEST(FeedUpdater, A_package_goes_to_the_installer_and_its_answer_to_the_user)
{
    using enum PackageInstaller::Fault;
    struct Row {
        std::expected<void, PackageInstaller::Failure> answer;
        QStringList told;
    };
    for (auto const& row : {
             Row { {}, { u"[Quillory 2.0 is installed. It runs after the next start.]"_s } },
             Row { std::unexpected(PackageInstaller::Failure { failed, u"No."_s }),
                 { u"failed: The update was not installed. No."_s, u"[! The update was not installed. No.]"_s } },
             Row { std::unexpected(PackageInstaller::Failure { cancelled, {} }), { u"[closed]"_s } },
         }) {
        UpdaterDesk desk;
        desk.folder.write("leftover", "");
        findAsUser(desk);
        desk.chosen(Choice::install);
        EXPECT_EQ(desk.until(u"install quillory-2.0.deb"_s),
            (QStringList { u"[progress of 100000]"_s, u"[all]"_s, u"[installing]"_s, u"install quillory-2.0.deb"_s }));
        EXPECT_EQ(desk.handedOver, desk.package);
        desk.updater->checkForUpdates();
        EXPECT_EQ(desk.until(u"[front]"_s), (QStringList { u"will show 2.0"_s, u"[front]"_s }));
        desk.installerDone(row.answer);
        EXPECT_EQ(desk.until(u"end"_s), row.told + ending);
        EXPECT_THAT(desk.filesLeft(), IsEmpty());
        desk.updater->checkForUpdates();
        EXPECT_EQ(desk.until(row.answer ? u"end"_s : u"attention"_s)[0],
            row.answer ? u"nothing found"_s : u"will show 2.0"_s);
    }
}

TEST(FeedUpdater, Without_the_installer_the_files_own_application_gets_it)
{
    for (auto const& suffix : { u".deb"_s, u".odd"_s }) {
        UpdaterDesk desk;
        desk.publish(desk.release(u"2.0"_s, suffix));
        findAsUser(desk);
        desk.chosen(Choice::install);
        if (suffix == u".deb") {
            desk.until(u"install quillory-2.0.deb"_s);
            desk.installerDone(std::unexpected(PackageInstaller::Failure { PackageInstaller::Fault::unavailable, {} }));
        } else {
            desk.until(u"[installing]"_s);
        }
        auto const path = desk.folder.path("new/quillory-2.0") + suffix;
        EXPECT_EQ(desk.opener.calls, QStringList { u"open "_s + path });
        desk.opener.answer({});
        EXPECT_EQ(desk.until(u"end"_s),
            (QStringList { u"[The package was handed to the application that opens it.]"_s } + ending));
        EXPECT_TRUE(QFile::exists(path)) << "the application reads it in its own time";
        // The next download makes room.
        findAsUser(desk);
        desk.server.answers.remove("/package" + suffix.toLatin1());
        desk.chosen(Choice::install);
        desk.until(u"end"_s);
    }
}

TEST(FeedUpdater, A_download_can_be_stopped_and_ends_with_the_program)
{
    UpdaterDesk desk;
    desk.server.answers["/package.deb"] = { LoopbackServer::answer("200 OK", desk.package).chopped(9), false };
    for (bool const isStopped : { true, false }) {
        findAsUser(desk);
        desk.chosen(Choice::install);
        EXPECT_TRUE(desk.loop.runUntil([&] { return desk.filesLeft() == QStringList { u"quillory-2.0.deb.part"_s }; }));
        desk.told.clear();
        isStopped ? desk.stop() : desk.restart();
        EXPECT_EQ(desk.until(u"[closed]"_s), QStringList { u"[closed]"_s } + (isStopped ? ending : QStringList()));
        EXPECT_THAT(desk.filesLeft(), IsEmpty());
    }
}

TEST(FeedUpdater, The_installer_keeps_its_package_beyond_the_end_of_the_program)
{
    UpdaterDesk desk;
    findAsUser(desk);
    desk.chosen(Choice::install);
    desk.until(u"install quillory-2.0.deb"_s);
    desk.restart();
    EXPECT_EQ(desk.filesLeft(), QStringList { u"quillory-2.0.deb"_s });
}

TEST(FeedUpdater, Asks_about_once_a_day_across_restarts_and_sleep_and_quietly)
{
    UpdaterDesk desk;
    QStringList const found { u"will show 2.0 gently"_s };
    auto const requests = [&] { return std::exchange(desk.server.requests, {}).size(); };
    desk.pass(119s);
    EXPECT_EQ(requests(), 0) << "the start is left in peace";
    desk.pass(1s);
    EXPECT_EQ(desk.until(found[0]), found);
    EXPECT_EQ(requests(), 2);
    EXPECT_EQ(desk.executor.pendingTimers(), 1) << "nothing but the next check is waited for";

    desk.pass(23h);
    desk.restart();
    desk.told.clear();
    desk.pass(59min);
    EXPECT_EQ(requests(), 0);
    desk.pass(1min);
    desk.until(found[0]);

    requests();
    desk.sleep(23h);
    EXPECT_EQ(requests(), 0);
    desk.sleep(1h);
    EXPECT_EQ(desk.until(found[0]), found);

    // Failures are quiet: one more try, then the next day. What waits goes on waiting.
    desk.server.answers.clear();
    requests();
    for (auto const time : std::vector<std::chrono::minutes> { 24h, 10min, 24h }) {
        desk.pass(time);
        desk.untilRequested(1);
        EXPECT_TRUE(desk.loop.runUntil([&] {
            desk.executor.runPosted();
            return desk.executor.pendingTimers() == 1;
        }));
        EXPECT_EQ(requests(), 1);
        EXPECT_THAT(desk.told, IsEmpty());
    }
    desk.updater->checkForUpdates();
    EXPECT_EQ(desk.until(u"attention"_s)[0], u"will show 2.0"_s);
    EXPECT_EQ(requests(), 0) << "what waits is shown at once";

    desk.updater->setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(desk.executor.pendingTimers(), 0);
    desk.restart();
    desk.sleep(48h);
    EXPECT_EQ(desk.executor.pendingTimers(), 0);
    desk.updater->setAutomaticallyChecksForUpdates(true);
    desk.untilRequested(1);
}

TEST(FeedUpdater, What_was_skipped_is_not_offered_again_unless_it_is_asked_for)
{
    UpdaterDesk desk;
    findAsUser(desk);
    desk.chosen(Choice::skip);
    EXPECT_EQ(desk.until(u"end"_s), QStringList { u"[closed]"_s } + ending);
    desk.pass(24h);
    EXPECT_EQ(desk.until(u"end"_s), QStringList { u"nothing found"_s } + ending);
    findAsUser(desk);
    desk.pass(24h); // the schedule leaves the window alone
    desk.chosen(Choice::later);
    desk.until(u"end"_s);
    desk.publish(desk.release(u"2.0"_s) + desk.release(u"2.1"_s));
    desk.pass(24h);
    EXPECT_EQ(desk.until(u"will show 2.1 gently"_s).size(), 1);
}

TEST(FeedUpdater, A_check_goes_on_as_the_users_own_and_only_once)
{
    UpdaterDesk desk;
    bool canCheck = false;
    auto const observation = desk.updater->observeCanCheckForUpdates([&](bool can) { canCheck = can; });
    EXPECT_TRUE(canCheck);
    desk.pass(120s);
    EXPECT_FALSE(canCheck);
    desk.updater->checkForUpdates();
    EXPECT_EQ(desk.until(u"attention"_s)[0], u"will show 2.0"_s);
    EXPECT_TRUE(canCheck);
    EXPECT_EQ(desk.server.requests.size(), 2);
}

TEST(FeedUpdater, Requests_tell_nothing_of_the_user)
{
    UpdaterDesk desk;
    desk.server.redirect("/releases.xml", desk.server.address(u"/other"_s).toEncoded());
    desk.server.serve("/other", "<releases></releases>");
    desk.server.serve("/releases.xml.minisig", FeedSigner().sign("<releases></releases>", 1));
    desk.updater->checkForUpdates();
    desk.until(u"nothing found"_s);
    QByteArrayList const paths { "/releases.xml.minisig", "/releases.xml", "/other" };
    ASSERT_EQ(desk.server.requests.size(), paths.size());
    for (qsizetype place = 0; place < paths.size(); ++place) {
        auto lines = desk.server.requests[place].split('\n');
        std::ranges::sort(lines);
        EXPECT_EQ(lines.join('\n').trimmed(),
            "Accept-Encoding: identity\r\nAccept-Language: *\r\nConnection: Keep-Alive\r\nGET " + paths[place]
                + " HTTP/1.1\r\nHost: " + desk.server.address({}).authority().toLatin1() + "\r\nUser-Agent: Quillory");
    }
}

}
}
