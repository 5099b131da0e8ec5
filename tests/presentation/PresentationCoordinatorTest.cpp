#include "presentation/PresentationCoordinator.h"

#include "support/FakeHotKeys.h"
#include "support/FakeLibraryServices.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

constexpr std::uint16_t keyK = 40;
constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;
constexpr std::uint64_t ownWindow = 9;
RunningApplication const editor { u"editor"_s, 1 };
RunningApplication const secondEditorWindow { u"editor"_s, 2 };
RunningApplication const browser { u"browser"_s, 3 };

// A panel that comes to the front of the desktop when it is shown, as the real one does.
class RecordingPanel final : public PanelSurface {
public:
    explicit RecordingPanel(FakeWorkspace& workspace)
        : m_workspace(workspace)
    {
        m_workspace.open({ m_workspace.mainBundleIdentifier(), ownWindow });
    }

    void show() override
    {
        calls.append(u"show"_s);
        m_workspace.activateIgnoringOtherApps(ownWindow);
    }
    void orderOut() override { calls.append(u"orderOut"_s); }

    QStringList calls;

private:
    FakeWorkspace& m_workspace;
};

UserDefaults& withToggleKey(UserDefaults& defaults)
{
    defaults.setValue(u"KeyboardShortcuts_toggleQuillory"_s, u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"_s);
    return defaults;
}

class PresentationCoordinatorTest : public testing::Test {
protected:
    PresentationCoordinatorTest()
    {
        for (auto const& application : { editor, secondEditorWindow, browser })
            workspace.open(application);
        workspace.bringToFront(secondEditorWindow.window);
    }

    void pressToggle()
    {
        hotKeys.press(keyK, controlOption);
        hotKeys.release(keyK);
    }

    FakeLibraryServices services;
    MemoryUserDefaults& defaults = services.defaults;
    FakeFileSystem& files = services.files;
    ManualExecutor& executor = services.executor;
    FakeWorkspace& workspace = services.workspace;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
    FakeHotKeys hotKeys;
    KeyboardShortcuts shortcuts { withToggleKey(defaults), hotKeys };
    RecordingPanel panel { workspace };
    PresentationCoordinator coordinator { store, shortcuts, workspace, panel };
};

TEST_F(PresentationCoordinatorTest, The_toggle_acts_when_its_key_is_let_go_and_gives_the_very_window_back)
{
    hotKeys.press(keyK, controlOption);
    EXPECT_THAT(panel.calls, ElementsAre());
    hotKeys.release(keyK);
    EXPECT_THAT(panel.calls, ElementsAre(u"show"_s));
    EXPECT_EQ(coordinator.state(), PresentationState::panel);

    pressToggle();
    EXPECT_THAT(panel.calls, ElementsAre(u"show"_s, u"orderOut"_s));
    EXPECT_THAT(workspace.activations, ElementsAre(secondEditorWindow));
    EXPECT_EQ(coordinator.state(), PresentationState::closed);
}

TEST_F(PresentationCoordinatorTest, Each_opening_reads_the_folder_again)
{
    files.addFolder(u"/library"_s);
    store.connect(u"/library"_s);
    executor.settle();
    auto const before = files.opens(u"/library"_s);
    coordinator.open();
    executor.settle();
    EXPECT_EQ(files.opens(u"/library"_s), before + 1);
}

TEST_F(PresentationCoordinatorTest, The_keyboard_goes_to_the_last_other_application)
{
    coordinator.open();
    workspace.bringToFront(browser.window);
    workspace.bringToFront(ownWindow);
    coordinator.close();
    EXPECT_THAT(workspace.activations, ElementsAre(browser));
}

TEST_F(PresentationCoordinatorTest, Nobody_is_activated_when_another_application_has_the_front_already)
{
    coordinator.open();
    workspace.bringToFront(browser.window);
    pressToggle();
    EXPECT_THAT(workspace.activations, ElementsAre());
}

TEST_F(PresentationCoordinatorTest, Nobody_is_activated_when_nobody_was_there_before)
{
    workspace.close(secondEditorWindow.window);
    coordinator.open();
    coordinator.close();
    EXPECT_THAT(workspace.activations, ElementsAre());
}

TEST_F(PresentationCoordinatorTest, A_panel_that_the_user_closed_counts_as_closed)
{
    coordinator.open();
    coordinator.windowWillClose();
    EXPECT_THAT(workspace.activations, ElementsAre(secondEditorWindow));
    pressToggle();
    EXPECT_THAT(panel.calls, ElementsAre(u"show"_s, u"show"_s));
}

}
}
