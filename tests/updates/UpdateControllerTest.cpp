#include "support/EventLoop.h"
#include "updates/UpdatesDesk.h"

namespace Quillory {
namespace {

TEST(UpdateController, Starts_the_updater_unless_the_process_is_only_looked_at)
{
    struct Row {
        bool isTested;
        QStringList arguments;
        bool isStarted, readsArguments;
    };
    for (auto const& row :
        { Row { false, {}, true, true }, Row { false, { u"-QuilloryCaptureLibrary"_s }, false, true },
            Row { false, { u"--x=-QuilloryCaptureLibrary"_s, u"QuilloryCaptureLibrary"_s }, true, true },
            Row { true, { u"-QuilloryCaptureLibrary"_s }, false, false } }) {
        UpdatesDesk const desk(row.isTested, row.arguments);
        EXPECT_EQ(desk.updater->calls.contains(u"start"_s), row.isStarted) << row.arguments.join(u' ').toStdString();
        EXPECT_EQ(desk.wereArgumentsRead, row.readsArguments);
        EXPECT_EQ(desk.updates.lastCheck.value(), desk.first);
    }
}

TEST(UpdateController, Follows_what_the_updater_says_and_writes_nothing_of_its_own_over_it)
{
    UpdatesDesk desk;
    EXPECT_FALSE(desk.updates.canCheckForUpdates);
    desk.updater->canCheck.set(true);
    EXPECT_TRUE(desk.updates.canCheckForUpdates);
    desk.updater->obeys = false;
    desk.updates.setAutomaticallyChecksForUpdates(false);
    EXPECT_TRUE(desk.updates.automaticChecks) << "it comes back by the updater alone";
    desk.updater->automatic.set(false);
    EXPECT_FALSE(desk.updates.automaticChecks);
}

TEST(UpdateController, A_session_is_told_step_by_step)
{
    struct Row {
        char const* name;
        bool userStarted;
        std::function<void(Updater::Delegate&)> step;
        bool updateAvailable, isChecking, isLater;
    };
    auto const show = [](bool userInitiated) {
        return [=](Updater::Delegate& told) { told.willHandleShowingUpdate({ u"2"_s }, userInitiated); };
    };
    for (auto const& row : {
             Row { "nothing found", true, [](auto& told) { told.didNotFindUpdate(); }, true, false, true },
             Row { "aborted", true, [](auto& told) { told.didAbortWithError({}); }, true, false, true },
             Row { "cycle ended", true, [](auto& told) { told.didFinishUpdateCycle(); }, true, false, true },
             Row { "shown to who asked", true, show(true), false, false, true },
             Row { "found by itself", false, show(false), true, false, true },
             Row { "attended to", true, [](auto& told) { told.didReceiveUserAttention({}); }, false, true, false },
             Row { "session ended", true, [](auto& told) { told.willFinishUpdateSession(); }, false, true, false },
         }) {
        SCOPED_TRACE(row.name);
        UpdatesDesk desk;
        desk.updater->delegate.willHandleShowingUpdate({ u"1"_s }, false);
        ASSERT_TRUE(desk.updates.updateAvailable);
        if (row.userStarted)
            desk.updates.checkForUpdates();
        EXPECT_EQ(desk.updates.isChecking, row.userStarted);
        desk.updater->lastCheck = desk.later;
        row.step(desk.updater->delegate);
        EXPECT_EQ(desk.updates.updateAvailable, row.updateAvailable);
        EXPECT_EQ(desk.updates.isChecking, row.isChecking);
        EXPECT_EQ(desk.updates.lastCheck.value(), row.isLater ? desk.later : desk.first);
    }
}

TEST(ReleaseVersionDisplay, Shows_the_release_where_it_has_a_name)
{
    struct Row {
        QVariant info;
        QString installed, text;
    };
    EventLoop const loop; // makes the application
    for (auto const& row : { Row { {}, u"7"_s, u"Version Unknown"_s }, Row { 3, u"7"_s, u"Version Unknown"_s },
             Row { u"Spring"_s, u"Spring"_s, u"Version Spring"_s }, Row { u""_s, u""_s, u"Version "_s } }) {
        qApp->setProperty(ReleaseVersionDisplay::infoKey, row.info);
        auto const display = ReleaseVersionDisplay::ofApplication();
        auto installed = u"7"_s;
        EXPECT_EQ(display.formatUpdateVersion(u"8"_s, installed), u"8"_s);
        EXPECT_EQ(installed, row.installed);
        EXPECT_EQ(display.formatInstalledVersion(u"7"_s), row.installed);
        EXPECT_EQ(display.versionText(), row.text);
    }
}

}
}
