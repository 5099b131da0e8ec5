#include "updates/UpdatesDesk.h"
#include "updates/views/CheckForUpdatesView.h"
#include "updates/views/UpdateSettingsView.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>

namespace Quillory {
namespace {

TEST(CheckForUpdatesView, Says_what_a_click_does_and_does_it)
{
    struct Row {
        bool isChecking, isAvailable, canCheck;
        QString label;
        bool isEnabled;
    };
    for (auto const& row : { Row { false, false, false, u"Check for Updates…"_s, false },
             Row { false, false, true, u"Check for Updates…"_s, true },
             Row { false, true, true, u"Update available…"_s, true },
             Row { true, true, true, u"Checking for Updates…"_s, false } }) {
        UpdatesDesk desk;
        CheckForUpdatesView view(desk.updates);
        desk.updater->canCheck.set(row.canCheck);
        if (row.isAvailable)
            desk.updater->delegate.willHandleShowingUpdate({}, false);
        if (row.isChecking)
            desk.updates.checkForUpdates();
        EXPECT_EQ(view.text(), row.label);
        EXPECT_EQ(view.isEnabled(), row.isEnabled);
        desk.updater->calls.clear();
        view.click();
        EXPECT_EQ(desk.updater->calls.contains(u"check"_s), row.isEnabled);
    }
}

TEST(UpdateSettingsView, Shows_one_of_progress_last_check_and_nothing_and_the_box_waits_for_the_updater)
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    UpdatesDesk desk;
    UpdateSettingsView const view(desk.updates);
    auto& progress = *view.findChild<QProgressBar*>();
    auto& last = *view.findChild<QLabel*>();
    auto& box = *view.findChild<QCheckBox*>();
    EXPECT_THAT(last.text().toStdString(), MatchesRegex("Last checked Nov 1[45], 2023 at [0-9]+:[0-9]+ [AP]M"));
    EXPECT_EQ(progress.accessibleName(), u"Checking for updates"_s);
    EXPECT_TRUE(progress.isHidden() && !last.isHidden());
    desk.updates.checkForUpdates();
    EXPECT_TRUE(!progress.isHidden() && last.isHidden());
    desk.updater->lastCheck.reset();
    desk.updater->delegate.didNotFindUpdate();
    EXPECT_TRUE(progress.isHidden() && last.isHidden());

    desk.updater->obeys = false;
    box.click();
    EXPECT_TRUE(box.isChecked());
    EXPECT_THAT(desk.updater->calls, Contains(u"manual"_s));
    desk.updater->automatic.set(false);
    EXPECT_FALSE(box.isChecked());
}

}
}
