#pragma once

#include "platform/Registration.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// How versions are shown to people.
class VersionDisplay {
public:
    virtual ~VersionDisplay() = default;

    // The text for the version that an update would bring. `installed` comes as the updater knows it and is left as it
    // is to be shown beside it.
    virtual QString formatUpdateVersion(QString const& updateVersion, QString& installed) const = 0;

    // The text for the installed version, which the updater knows as `installed`.
    virtual QString formatInstalledVersion(QString const& installed) const = 0;
};

// Finds newer versions of the program and, with the user's consent, hands them to the system's installer: the feed, the
// schedule, the download and its own windows are its affair. Main thread only.
class Updater {
public:
    struct Update {
        QString version;
        bool operator==(Update const&) const = default;
    };
    struct Failure {
        QString description; // a sentence in the user's language
        bool operator==(Failure const&) const = default;
    };

    // A session begins with a check. It ends without an update or by a failure, or shows one: to the user who asked at
    // once, else in the program's own way until the user asks. Then `willFinishUpdateSession`, last `didFinishUpdateCycle`.
    class Delegate {
    public:
        virtual ~Delegate() = default;

        // True: an update that a scheduled check finds opens no window.
        virtual bool supportsGentleScheduledUpdateReminders() const = 0;
        virtual VersionDisplay const& versionDisplayer() const = 0;

        virtual void willHandleShowingUpdate(Update const& update, bool userInitiated) = 0;
        virtual void didReceiveUserAttention(Update const& update) = 0;
        virtual void willFinishUpdateSession() = 0;

        virtual void didNotFindUpdate() = 0;
        virtual void didAbortWithError(Failure const& failure) = 0;
        virtual void didFinishUpdateCycle() = 0;
    };

    // Makes an updater that is not started and tells `delegate`, which outlives it.
    using Make = std::function<std::unique_ptr<Updater>(Delegate& delegate)>;
    using Changed = std::function<void(bool)>;

    virtual ~Updater() = default;

    // Begins the schedule. Until then no check is possible.
    virtual void startUpdater() = 0;

    // As the user asks for: its outcome is shown, whatever it is.
    virtual void checkForUpdates() = 0;

    // Both call `changed` with the present value at once, and with each new one.
    virtual Registration observeCanCheckForUpdates(Changed changed) = 0;
    virtual Registration observeAutomaticallyChecksForUpdates(Changed changed) = 0;
    virtual void setAutomaticallyChecksForUpdates(bool isOn) = 0;

    // When a check last came to its end. Absent if none did.
    virtual std::optional<QDateTime> lastUpdateCheckDate() const = 0;
};

}
