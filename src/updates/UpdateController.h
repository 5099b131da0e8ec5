#pragma once

#include "platform/OwnedProperty.h"
#include "platform/Updater.h"
#include "updates/ReleaseVersionDisplay.h"

#include <QDateTime>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// The state of updates as the rest of the program sees it. Where no updates are offered there is none of these.
// Main thread only; every property can be observed.
class UpdateController final : private Updater::Delegate {
public:
    // The process as it was started.
    struct Process {
        std::function<bool(QString const& name)> hasEnvironment;
        std::function<QStringList()> arguments;
        static Process ofThis();
    };

    // Starts the updater, unless the process was started to be looked at only.
    UpdateController(Updater::Make makeUpdater, ReleaseVersionDisplay display, Process const& process);
    ~UpdateController() override;
    UpdateController(UpdateController const&) = delete;
    UpdateController& operator=(UpdateController const&) = delete;

    // The user asks for a check, or for the update that waits.
    void checkForUpdates();

    // `automaticChecks` follows.
    void setAutomaticallyChecksForUpdates(bool isOn);

    template<typename Value>
    using Property = OwnedProperty<Value, UpdateController>;

    Property<bool> canCheckForUpdates { false };
    Property<bool> automaticChecks { true };
    Property<bool> updateAvailable { false }; // one was found without being asked for, and waits
    Property<bool> isChecking { false };      // as the user asked for
    Property<std::optional<QDateTime>> lastCheck;
    ReleaseVersionDisplay const versionDisplay;

private:
    bool supportsGentleScheduledUpdateReminders() const override { return true; }
    VersionDisplay const& versionDisplayer() const override { return versionDisplay; }
    void willHandleShowingUpdate(Updater::Update const& update, bool userInitiated) override;
    void didReceiveUserAttention(Updater::Update const&) override { updateAvailable.setValue(false); }
    void willFinishUpdateSession() override { updateAvailable.setValue(false); }
    void didNotFindUpdate() override { refresh(); }
    void didAbortWithError(Updater::Failure const&) override { refresh(); }
    void didFinishUpdateCycle() override { refresh(); }

    Updater& updater();
    void refresh();

    Updater::Make m_makeUpdater;
    std::unique_ptr<Updater> m_updater;
    Registration m_canCheck;
    Registration m_automatic;
};

}
