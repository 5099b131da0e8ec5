#pragma once

#include "linux/network/HttpDownloads.h"
#include "support/EventLoop.h"
#include "support/FakeFileOpener.h"
#include "support/FeedSigner.h"
#include "support/LoopbackServer.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"
#include "updates/ReleaseVersionDisplay.h"
#include "updates/updater/FeedUpdater.h"

#include <QCryptographicHash>
#include <QDir>

namespace Quillory {

// The updater with its real client before a real server; time, the window, the desktop and the installer are the test's.
// `told` has in one order what the delegate hears and what the user sees.
class UpdaterDesk : private Updater::Delegate, private UpdateWindow, private PackageInstaller, private SessionEvents {
public:
    static constexpr qint64 now = 1'700'000'000;

    UpdaterDesk()
    {
        publish(release(u"2.0"_s));
        restart();
    }

    void restart()
    {
        updater.reset();
        Updater::Delegate& toTell = *this;
        updater = std::make_unique<FeedUpdater>(
            FeedUpdater::Settings { server.address(u"/releases.xml"_s),
                *MinisignKey::fromText(FeedSigner().publicKey()), *ReleaseVersion::fromText(u"1.0"_s), u"this"_s,
                folder.path("new") },
            FeedUpdater::Services {
                defaults, executor, *this, downloads, *this, opener, *this, [this] { return wallClock(); } },
            toTell);
        updater->startUpdater();
    }

    QString release(QString const& version, QString const& suffix = u".deb"_s)
    {
        auto const sum = QCryptographicHash::hash(package, QCryptographicHash::Sha256).toHex();
        return uR"(<release version="%1"><description><p>New</p></description><artifacts><artifact type="binary"
            platform="this"><location>%2</location><size type="download">%3</size><checksum type="sha256">%4</checksum>
            </artifact></artifacts></release>)"_s.arg(version, server.address(u"/package"_s + suffix).toString(),
            QString::number(package.size()), QString::fromLatin1(sum));
    }

    void publish(QString const& releases, qint64 time = now)
    {
        publishDocument("<releases>" + releases.toUtf8() + "</releases>", time);
    }
    void publishDocument(QByteArray const& document, qint64 time = now)
    {
        server.serve("/releases.xml", document);
        server.serve("/releases.xml.minisig", FeedSigner().sign(document, time));
        server.serve("/package.deb", package);
        server.serve("/package.odd", package);
    }

    // Runs until `last` was told; then gives all that was told since the last time.
    QStringList until(QString const& last)
    {
        EXPECT_TRUE(loop.runUntil([&] {
            executor.runPosted();
            return told.contains(last);
        })) << last.toStdString()
            << " was not told, but " << told.join(u", ").toStdString();
        return std::exchange(told, {});
    }
    void untilRequested(qsizetype count)
    {
        EXPECT_TRUE(loop.runUntil([&] {
            executor.runPosted();
            return server.requests.size() >= count;
        }));
    }

    // Time goes by with the machine awake; it sleeps while only the clock on the wall goes on.
    void pass(std::chrono::seconds time) { executor.advance(time); }
    void sleep(std::chrono::seconds time)
    {
        m_slept += time;
        wakes.tell();
        executor.runPosted();
    }
    QDateTime wallClock() const
    {
        auto const passed = std::chrono::duration_cast<std::chrono::seconds>(executor.now() - m_start) + m_slept;
        return QDateTime::fromSecsSinceEpoch(now + passed.count());
    }

    QStringList filesLeft() const { return QDir(folder.path("new")).entryList(QDir::Files | QDir::Hidden); }

    EventLoop loop;
    TemporaryFolder folder;
    QByteArray package = QByteArray("a package ").repeated(10'000);
    LoopbackServer server;
    ManualExecutor executor;
    MemoryUserDefaults defaults;
    FakeFileOpener opener;
    Observers<void()> wakes;
    QStringList told;
    std::function<void(Choice)> chosen;
    std::function<void()> stop;
    PackageInstaller::Done installerDone;
    QByteArray handedOver;
    HttpDownloads downloads { executor };
    std::unique_ptr<FeedUpdater> updater;

private:
    void say(QString const& what) { told << what; }

    bool supportsGentleScheduledUpdateReminders() const override { return true; }
    VersionDisplay const& versionDisplayer() const override { return m_display; }
    void willHandleShowingUpdate(Updater::Update const& update, bool byUser) override
    {
        say(u"will show %1%2"_s.arg(update.version, byUser ? u""_s : u" gently"_s));
    }
    void didReceiveUserAttention(Updater::Update const&) override { say(u"attention"_s); }
    void willFinishUpdateSession() override { say(u"session ends"_s); }
    void didNotFindUpdate() override { say(u"nothing found"_s); }
    void didAbortWithError(Updater::Failure const& failure) override { say(u"failed: "_s + failure.description); }
    void didFinishUpdateCycle() override { say(u"end"_s); }

    void showOffer(Offer const& offer, std::function<void(Choice)> toChoose) override
    {
        chosen = std::move(toChoose);
        say(u"[%1 for %2]"_s.arg(offer.version, offer.installed));
    }
    void showProgress(std::int64_t size, std::function<void()> toStop) override
    {
        stop = std::move(toStop);
        say(u"[progress of %1]"_s.arg(size));
    }
    void setProgress(std::int64_t received) override
    {
        if (received == package.size())
            say(u"[all]"_s);
    }
    void showInstalling() override { say(u"[installing]"_s); }
    void showMessage(QString const& sentence, Tone tone) override
    {
        say((tone == Tone::failure ? u"[! %1]"_s : u"[%1]"_s).arg(sentence));
    }
    void bringToFront() override { say(u"[front]"_s); }
    void close() override { say(u"[closed]"_s); }

    Registration install(QString const& path, PackageInstaller::Done done) override
    {
        QFile file(path);
        handedOver = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
        installerDone = std::move(done);
        say(u"install "_s + path.section(u'/', -1));
        return Registration([] { });
    }

    Registration observeWillSleep(Action) override { return {}; }
    Registration observeDidWake(Action action) override { return wakes.add(std::move(action)); }
    Registration observeSessionDidResignActive(Action) override { return {}; }

    ReleaseVersionDisplay const m_display { std::nullopt };
    std::chrono::nanoseconds const m_start = executor.now();
    std::chrono::seconds m_slept {};
};

}
