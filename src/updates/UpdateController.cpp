#include "updates/UpdateController.h"

#include <QCoreApplication>

#include <utility>

namespace Quillory {

namespace {

// A process that tests run in, or that takes pictures of the library, looks for no updates.
bool isHeld(UpdateController::Process const& process)
{
    return process.hasEnvironment(QStringLiteral("XCTestConfigurationFilePath"))
        || process.arguments().contains(QStringLiteral("-QuilloryCaptureLibrary"));
}

}

UpdateController::Process UpdateController::Process::ofThis()
{
    return { [](QString const& name) { return qEnvironmentVariableIsSet(name.toLatin1().constData()); },
        [] { return QCoreApplication::arguments(); } };
}

UpdateController::UpdateController(Updater::Make makeUpdater, ReleaseVersionDisplay display, Process const& process)
    : versionDisplay(std::move(display))
    , m_makeUpdater(std::move(makeUpdater))
{
    bool const held = isHeld(process);
    m_canCheck = updater().observeCanCheckForUpdates([this](bool canCheck) { canCheckForUpdates.setValue(canCheck); });
    m_automatic = updater().observeAutomaticallyChecksForUpdates([this](bool isOn) { automaticChecks.setValue(isOn); });
    if (!held)
        updater().startUpdater();
    lastCheck.setValue(updater().lastUpdateCheckDate());
}

// The updater tells its delegate until its end.
UpdateController::~UpdateController()
{
    m_canCheck.end();
    m_automatic.end();
    m_updater.reset();
}

void UpdateController::checkForUpdates()
{
    isChecking.setValue(true);
    updater().checkForUpdates();
}

void UpdateController::setAutomaticallyChecksForUpdates(bool isOn)
{
    updater().setAutomaticallyChecksForUpdates(isOn);
}

void UpdateController::willHandleShowingUpdate(Updater::Update const&, bool userInitiated)
{
    updateAvailable.setValue(!userInitiated);
    refresh();
}

Updater& UpdateController::updater()
{
    if (!m_updater)
        m_updater = m_makeUpdater(*this);
    return *m_updater;
}

void UpdateController::refresh()
{
    isChecking.setValue(false);
    lastCheck.setValue(updater().lastUpdateCheckDate());
}

}
