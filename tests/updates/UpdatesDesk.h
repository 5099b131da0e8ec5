#pragma once

#include "support/FakeUpdater.h"
#include "support/Test.h"
#include "updates/UpdateController.h"

namespace Quillory {

// A controller over an updater turned by hand.
class UpdatesDesk {
public:
    explicit UpdatesDesk(bool isTested = false, QStringList const& arguments = {})
        : updates(
              [this](Updater::Delegate& delegate) {
                  auto made = std::make_unique<FakeUpdater>(delegate);
                  made->lastCheck = first;
                  updater = made.get();
                  return made;
              },
              ReleaseVersionDisplay(u"Spring"_s), process(isTested, arguments))
    {
    }

    UpdateController::Process process(bool isTested, QStringList const& arguments)
    {
        return { [isTested](QString const& name) { return isTested && name == u"XCTestConfigurationFilePath"; },
            [this, arguments] {
                wereArgumentsRead = true;
                return arguments;
            } };
    }

    QDateTime const first = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    QDateTime const later = first.addDays(1);
    bool wereArgumentsRead = false;
    FakeUpdater* updater = nullptr;
    UpdateController updates;
};

}
