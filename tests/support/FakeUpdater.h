#pragma once

#include "platform/Updater.h"

#include <QStringList>

#include <utility>

namespace Quillory {

// An updater turned by hand, which notes what it is asked.
class FakeUpdater final : public Updater {
public:
    explicit FakeUpdater(Delegate& toTell)
        : delegate(toTell)
    {
    }

    void startUpdater() override { calls << QStringLiteral("start"); }
    void checkForUpdates() override { calls << QStringLiteral("check"); }
    Registration observeCanCheckForUpdates(Changed changed) override { return canCheck.observe(std::move(changed)); }
    Registration observeAutomaticallyChecksForUpdates(Changed changed) override
    {
        return automatic.observe(std::move(changed));
    }
    void setAutomaticallyChecksForUpdates(bool isOn) override
    {
        calls << (isOn ? QStringLiteral("automatic") : QStringLiteral("manual"));
        if (obeys)
            automatic.set(isOn);
    }
    std::optional<QDateTime> lastUpdateCheckDate() const override { return lastCheck; }

    struct Switch {
        bool isOn = false;
        Changed changed;
        void set(bool value)
        {
            isOn = value;
            changed(isOn);
        }
        Registration observe(Changed toTell)
        {
            changed = std::move(toTell);
            changed(isOn);
            return Registration([this] { changed = nullptr; });
        }
    };

    Delegate& delegate;
    Switch canCheck { false, {} };
    Switch automatic { true, {} };
    bool obeys = true;
    std::optional<QDateTime> lastCheck;
    QStringList calls;
};

}
