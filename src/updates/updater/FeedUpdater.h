#pragma once

#include "platform/Downloads.h"
#include "platform/Executor.h"
#include "platform/FileOpener.h"
#include "platform/Lifetime.h"
#include "platform/Observers.h"
#include "platform/PackageInstaller.h"
#include "platform/SessionEvents.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "updates/feed/MinisignKey.h"
#include "updates/feed/Release.h"
#include "updates/updater/ArtifactDownload.h"
#include "updates/updater/FeedCheck.h"
#include "updates/updater/ScheduledChecks.h"
#include "updates/updater/UpdateRecord.h"
#include "updates/updater/UpdateWindow.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace Quillory {

// The updater over a signed feed. Nothing is fetched before it was started, nothing but the feed without the user's
// consent, and nothing is run: a package goes to the system's installer. Main thread only.
class FeedUpdater final : public Updater {
    Q_DECLARE_TR_FUNCTIONS(Updates)
public:
    struct Settings {
        QUrl feed;
        MinisignKey key;
        ReleaseVersion installed;
        QString platform; // as the feed calls this machine's
        QString folder;   // for downloads, of this updater alone
    };
    struct Services {
        UserDefaults& defaults;
        Executor& executor;
        SessionEvents& session;
        Downloads& downloads;
        PackageInstaller& installer;
        FileOpener& fileOpener;
        UpdateWindow& window;
        std::function<QDateTime()> wallClock;
    };

    FeedUpdater(Settings settings, Services services, Delegate& delegate);
    FeedUpdater(FeedUpdater const&) = delete;
    FeedUpdater& operator=(FeedUpdater const&) = delete;
    ~FeedUpdater() override;

    void startUpdater() override;
    void checkForUpdates() override;
    Registration observeCanCheckForUpdates(Changed changed) override;
    Registration observeAutomaticallyChecksForUpdates(Changed changed) override;
    void setAutomaticallyChecksForUpdates(bool isOn) override;
    std::optional<QDateTime> lastUpdateCheckDate() const override { return m_record.lastCheck(); }

private:
    enum class Initiative { schedule, user };

    struct Stopped { };
    struct Idle { };
    struct Checking {
        Initiative initiative = Initiative::schedule;
        std::optional<Release> waiting; // found by an earlier check
        std::unique_ptr<FeedCheck> check;
    };
    struct Waiting {
        Release release;
    };
    struct Offered {
        Release release;
    };
    struct Downloading {
        Release release;
        std::unique_ptr<ArtifactDownload> download;
    };
    struct Installing {
        Release release;
        DownloadedPackage package;
        Registration task;
    };
    using State = std::variant<Stopped, Idle, Checking, Waiting, Offered, Downloading, Installing>;

    void enter(State state);
    bool canCheck() const;

    void checkBySchedule();
    void check(Initiative initiative, std::optional<Release> waiting);
    void checked(std::expected<SignedFeed, QString> const& result);
    void checkFailed(Checking const& checking, QString const& sentence);
    std::optional<Release> wanted(SignedFeed const& feed, Initiative initiative) const;
    void notFound(Initiative initiative);

    void remind(Release const& release);
    void offer(Release const& release);
    void choose(UpdateWindow::Choice choice);
    void download(Release const& release);
    void install(Release const& release, DownloadedPackage package);
    void openWithApplication();
    void installed(std::expected<void, PackageInstaller::Failure> const& result);

    void showAgain(Release const& release);
    void abort(QString const& sentence);
    void finishSession();
    QString newestSentence() const;
    static Update toUpdate(Release const& release) { return { release.version.text() }; }

    Settings m_settings;
    Services m_services;
    Delegate& m_delegate;
    UpdateRecord m_record;
    ScheduledChecks m_schedule;
    Observers<void(bool)> m_canCheckObservers;
    Observers<void(bool)> m_automaticObservers;
    State m_state;
    std::optional<ReleaseVersion> m_installed; // since the start of this process, which is still the old one
    Lifetime m_lifetime; // of callbacks of the window and of other programs
};

}
