#include "updates/updater/FeedUpdater.h"

#include "updates/updater/UpdateAddress.h"

#include <QFileInfo>

#include <utility>

namespace Quillory {

FeedUpdater::FeedUpdater(Settings settings, Services services, Delegate& delegate)
    : m_settings(std::move(settings))
    , m_services(std::move(services))
    , m_delegate(delegate)
    , m_record(m_services.defaults)
    , m_schedule(
          { m_services.executor, m_services.session, m_services.wallClock, [this] { return m_record.lastAttempt(); } },
          [this] { checkBySchedule(); })
{
}

// The installer may still be reading what it was given: that goes before the next download.
FeedUpdater::~FeedUpdater()
{
    if (auto* const installing = std::get_if<Installing>(&m_state))
        installing->package.leave();
    m_lifetime.end();
    m_services.window.close();
}

void FeedUpdater::startUpdater()
{
    if (!std::holds_alternative<Stopped>(m_state))
        return;
    enter(Idle {});
    if (m_record.automaticChecks())
        m_schedule.begin();
}

void FeedUpdater::checkForUpdates()
{
    if (auto* const checking = std::get_if<Checking>(&m_state))
        checking->initiative = Initiative::user;
    else if (auto const* const waiting = std::get_if<Waiting>(&m_state))
        offer(Release(waiting->release));
    else if (auto const* const offered = std::get_if<Offered>(&m_state))
        showAgain(offered->release);
    else if (auto const* const downloading = std::get_if<Downloading>(&m_state))
        showAgain(downloading->release);
    else if (auto const* const installing = std::get_if<Installing>(&m_state))
        showAgain(installing->release);
    else if (std::holds_alternative<Idle>(m_state))
        check(Initiative::user, std::nullopt);
    else
        m_delegate.didAbortWithError({ tr("Updates are not looked for.") });
}

Registration FeedUpdater::observeCanCheckForUpdates(Changed changed)
{
    changed(canCheck());
    return m_canCheckObservers.add(std::move(changed));
}

Registration FeedUpdater::observeAutomaticallyChecksForUpdates(Changed changed)
{
    changed(m_record.automaticChecks());
    return m_automaticObservers.add(std::move(changed));
}

void FeedUpdater::setAutomaticallyChecksForUpdates(bool isOn)
{
    if (isOn == m_record.automaticChecks())
        return;
    m_record.setAutomaticChecks(isOn);
    if (!isOn)
        m_schedule.stop();
    else if (!std::holds_alternative<Stopped>(m_state))
        m_schedule.resume();
    m_automaticObservers.tell(isOn);
}

void FeedUpdater::enter(State state)
{
    bool const couldCheck = canCheck();
    // What the old state held may be what called: it ends once the new one stands.
    auto const old = std::exchange(m_state, std::move(state));
    if (canCheck() != couldCheck)
        m_canCheckObservers.tell(canCheck());
}

bool FeedUpdater::canCheck() const
{
    return !std::holds_alternative<Stopped>(m_state) && !std::holds_alternative<Checking>(m_state);
}

// One that waits may have been followed by a newer one. What the user is at is not disturbed.
void FeedUpdater::checkBySchedule()
{
    if (auto const* const waiting = std::get_if<Waiting>(&m_state))
        check(Initiative::schedule, waiting->release);
    else if (std::holds_alternative<Idle>(m_state))
        check(Initiative::schedule, std::nullopt);
    else
        m_schedule.passOver();
}

void FeedUpdater::check(Initiative initiative, std::optional<Release> waiting)
{
    auto const now = m_services.wallClock();
    m_record.setLastAttempt(now);
    SignedFeed::Expected const expected { m_settings.key, m_settings.feed.fileName().toUtf8(), m_record.feedTime(),
        now.toSecsSinceEpoch() };
    auto feedCheck = std::make_unique<FeedCheck>(m_services.downloads, m_settings.feed, expected,
        [this](std::expected<SignedFeed, QString> const& result) { checked(result); });
    enter(Checking { initiative, std::move(waiting), std::move(feedCheck) });
}

void FeedUpdater::checked(std::expected<SignedFeed, QString> const& result)
{
    auto const checking = std::exchange(std::get<Checking>(m_state), Checking {});
    if (!result)
        return checkFailed(checking, result.error());
    m_record.setFeedTime(result->time);
    m_record.setLastCheck(m_services.wallClock());
    m_schedule.succeeded();
    auto const found = wanted(*result, checking.initiative);
    if (!found)
        notFound(checking.initiative);
    else if (checking.initiative == Initiative::user || !m_delegate.supportsGentleScheduledUpdateReminders())
        offer(*found);
    else
        remind(*found);
}

// Of a check that nobody asked for the user hears nothing, and what waits goes on waiting.
void FeedUpdater::checkFailed(Checking const& checking, QString const& sentence)
{
    m_schedule.failed();
    if (checking.initiative == Initiative::user)
        return abort(tr("Quillory could not look for updates. %1").arg(sentence));
    if (checking.waiting)
        return enter(Waiting { *checking.waiting });
    enter(Idle {});
    m_delegate.didAbortWithError({ sentence });
    finishSession();
}

// Who asks gets what was skipped as well, but nobody what only waits for the next start.
std::optional<Release> FeedUpdater::wanted(SignedFeed const& feed, Initiative initiative) const
{
    auto newest = feed.feed.newestAfter(m_settings.installed, m_settings.platform);
    auto const skipped = m_record.skipped();
    if (newest && m_installed && newest->version <= *m_installed)
        return std::nullopt;
    if (newest && skipped && initiative == Initiative::schedule && newest->version <= *skipped)
        return std::nullopt;
    return newest;
}

void FeedUpdater::notFound(Initiative initiative)
{
    enter(Idle {});
    m_delegate.didNotFindUpdate();
    if (initiative == Initiative::user)
        m_services.window.showMessage(newestSentence(), UpdateWindow::Tone::news);
    finishSession();
}

void FeedUpdater::remind(Release const& release)
{
    enter(Waiting { release });
    m_delegate.willHandleShowingUpdate(toUpdate(release), false);
}

void FeedUpdater::offer(Release const& release)
{
    enter(Offered { release });
    m_delegate.willHandleShowingUpdate(toUpdate(release), true);
    auto installed = m_settings.installed.text();
    auto const version = m_delegate.versionDisplayer().formatUpdateVersion(release.version.text(), installed);
    m_services.window.showOffer({ version, installed, release, release.artifactFor(m_settings.platform)->size },
        m_lifetime.guarded([this](UpdateWindow::Choice choice) { choose(choice); }));
    m_delegate.didReceiveUserAttention(toUpdate(release));
}

void FeedUpdater::choose(UpdateWindow::Choice choice)
{
    auto const* const offered = std::get_if<Offered>(&m_state);
    if (!offered)
        return;
    auto const release = offered->release;
    if (choice == UpdateWindow::Choice::install)
        return download(release);
    if (choice == UpdateWindow::Choice::skip)
        m_record.setSkipped(release.version);
    enter(Idle {});
    m_services.window.close();
    finishSession();
}

void FeedUpdater::download(Release const& release)
{
    auto const& artifact = *release.artifactFor(m_settings.platform);
    if (!mayFetch(artifact.location, m_settings.feed))
        return abort(tr("The list of releases names an address that is not secure."));
    m_services.window.showProgress(artifact.size, m_lifetime.guarded([this] {
        if (!std::holds_alternative<Downloading>(m_state))
            return;
        enter(Idle {});
        m_services.window.close();
        finishSession();
    }));
    auto arrived = [this](std::expected<DownloadedPackage, QString> result) {
        if (result)
            install(Release(std::get<Downloading>(m_state).release), *std::move(result));
        else
            abort(tr("The update could not be fetched. %1").arg(result.error()));
    };
    enter(Downloading { release,
        std::make_unique<ArtifactDownload>(
            m_services.downloads, release, artifact, ArtifactDownload::Place { m_settings.feed, m_settings.folder },
            [this](std::int64_t received) { m_services.window.setProgress(received); }, std::move(arrived)) });
}

void FeedUpdater::install(Release const& release, DownloadedPackage package)
{
    auto const path = package.path();
    enter(Installing { release, std::move(package), {} });
    m_services.window.showInstalling();
    if (!path.endsWith(QStringLiteral(".deb")))
        return openWithApplication();
    std::get<Installing>(m_state).task = m_services.installer.install(
        path, [this](std::expected<void, PackageInstaller::Failure> const& result) { installed(result); });
}

// The application reads the file in its own time.
void FeedUpdater::openWithApplication()
{
    auto const path = std::get<Installing>(m_state).package.path();
    m_services.fileOpener.open(path, m_lifetime.guarded([this](std::expected<void, FileOpener::Failure> const& result) {
        auto* const installing = std::get_if<Installing>(&m_state);
        if (!installing)
            return;
        if (!result)
            return abort(tr("No application takes the package. %1").arg(result.error().description));
        installing->package.leave();
        enter(Idle {});
        m_services.window.showMessage(
            tr("The package was handed to the application that opens it."), UpdateWindow::Tone::news);
        finishSession();
    }));
}

void FeedUpdater::installed(std::expected<void, PackageInstaller::Failure> const& result)
{
    using enum PackageInstaller::Fault;
    if (!result && result.error().fault == unavailable)
        return openWithApplication();
    if (!result && result.error().fault == failed)
        return abort(tr("The update was not installed. %1").arg(result.error().description));
    auto const version = std::get<Installing>(m_state).release.version;
    enter(Idle {});
    if (result) {
        m_installed = version;
        m_services.window.showMessage(newestSentence(), UpdateWindow::Tone::news);
    } else {
        m_services.window.close();
    }
    finishSession();
}

void FeedUpdater::showAgain(Release const& release)
{
    m_delegate.willHandleShowingUpdate(toUpdate(release), true);
    m_services.window.bringToFront();
}

void FeedUpdater::abort(QString const& sentence)
{
    enter(Idle {});
    m_delegate.didAbortWithError({ sentence });
    m_services.window.showMessage(sentence, UpdateWindow::Tone::failure);
    finishSession();
}

void FeedUpdater::finishSession()
{
    m_delegate.willFinishUpdateSession();
    m_delegate.didFinishUpdateCycle();
}

QString FeedUpdater::newestSentence() const
{
    if (m_installed)
        return tr("Quillory %1 is installed. It runs after the next start.").arg(m_installed->text());
    auto const running = m_delegate.versionDisplayer().formatInstalledVersion(m_settings.installed.text());
    return tr("Quillory %1 is the newest version.").arg(running);
}

}
