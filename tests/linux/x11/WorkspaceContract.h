#pragma once

#include "platform/Workspace.h"

#include "support/Desks.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace Quillory {

inline void PrintTo(RunningApplication const& application, std::ostream* out)
{
    *out << application.bundleIdentifier.toStdString() << " (window " << application.window << ")";
}

// What every workspace must do, told on a desk with windows of other programs and of ours.
class WorkspaceDesk {
public:
    virtual ~WorkspaceDesk() = default;

    virtual Workspace& workspace() = 0;

    // A new window, which comes to the front as new windows do.
    virtual std::uint64_t open(QString const& windowClass) = 0;
    virtual std::uint64_t openOwn() = 0;
    virtual void close(std::uint64_t window) = 0;

    // The user points at the window.
    virtual void choose(std::uint64_t window) = 0;

    // True once the condition holds, or held within the desk's bound.
    virtual bool comesTrue(std::function<bool()> const& condition) = 0;
};

class WorkspaceContract : public ContractOn<WorkspaceDesk> {
protected:
    bool comesToFront(std::uint64_t window, QString const& identifier)
    {
        return desk->comesTrue(
            [&] { return workspace.frontmostApplication() == RunningApplication { identifier, window }; });
    }

    std::unique_ptr<WorkspaceDesk> desk = GetParam().make();
    Workspace& workspace = desk->workspace();
    QString const editor = QStringLiteral("Editor");
    QString const terminal = QStringLiteral("Terminal");
};

TEST_P(WorkspaceContract, The_application_in_front_is_told_by_its_windows_class)
{
    auto const first = desk->open(editor);
    EXPECT_TRUE(comesToFront(first, editor));
    auto const second = desk->open(terminal);
    EXPECT_TRUE(comesToFront(second, terminal));
    desk->choose(first);
    EXPECT_TRUE(comesToFront(first, editor));
}

TEST_P(WorkspaceContract, Nothing_is_in_front_of_an_empty_desktop)
{
    auto const only = desk->open(editor);
    ASSERT_TRUE(comesToFront(only, editor));
    desk->close(only);
    EXPECT_TRUE(desk->comesTrue([&] { return !workspace.frontmostApplication(); }));
}

TEST_P(WorkspaceContract, Each_application_that_comes_to_the_front_is_noticed_once)
{
    auto const first = desk->open(editor);
    ASSERT_TRUE(comesToFront(first, editor));
    std::vector<RunningApplication> noticed;
    auto observation = workspace.observeActivation([&](auto const& application) { noticed.push_back(application); });
    auto const second = desk->open(terminal);
    EXPECT_TRUE(desk->comesTrue([&] { return noticed.size() == 1; }));
    desk->choose(second);
    desk->choose(first);
    EXPECT_TRUE(desk->comesTrue([&] { return noticed.size() == 2; }));
    std::vector<RunningApplication> const expected { { terminal, second }, { editor, first } };
    EXPECT_EQ(noticed, expected);

    observation.end();
    desk->choose(second);
    EXPECT_TRUE(comesToFront(second, terminal));
    EXPECT_EQ(noticed, expected);
}

TEST_P(WorkspaceContract, The_front_goes_back_to_the_very_window_of_two_of_one_class)
{
    auto const first = desk->open(editor);
    ASSERT_TRUE(comesToFront(first, editor));
    auto const second = desk->open(editor);
    ASSERT_TRUE(comesToFront(second, editor));
    auto const own = desk->openOwn();
    ASSERT_TRUE(comesToFront(own, workspace.mainBundleIdentifier()));
    for (auto const window : { first, second, first }) {
        desk->choose(window);
        ASSERT_TRUE(comesToFront(window, editor));
        auto const previous = workspace.frontmostApplication();
        ASSERT_TRUE(previous.has_value());
        workspace.prepareToShow(own);
        workspace.activateIgnoringOtherApps(own);
        ASSERT_TRUE(comesToFront(own, workspace.mainBundleIdentifier()));
        workspace.activate(*previous);
        EXPECT_TRUE(comesToFront(window, editor));
    }
}

TEST_P(WorkspaceContract, A_window_of_ours_is_noticed_under_our_identifier)
{
    auto const first = desk->open(editor);
    ASSERT_TRUE(comesToFront(first, editor));
    std::vector<RunningApplication> noticed;
    auto const observation = workspace.observeActivation(
        [&](auto const& application) { noticed.push_back(application); });
    auto const own = desk->openOwn();
    EXPECT_TRUE(desk->comesTrue([&] { return !noticed.empty(); }));
    EXPECT_EQ(noticed, (std::vector<RunningApplication> { { QStringLiteral("quillory"), own } }));
}

TEST_P(WorkspaceContract, Activating_a_window_that_is_gone_leaves_the_front_alone)
{
    auto const gone = desk->open(terminal);
    ASSERT_TRUE(comesToFront(gone, terminal));
    auto const first = desk->open(editor);
    ASSERT_TRUE(comesToFront(first, editor));
    desk->close(gone);
    workspace.activate({ terminal, gone });
    auto const second = desk->open(editor);
    EXPECT_TRUE(comesToFront(second, editor));
    workspace.activate({ editor, first });
    EXPECT_TRUE(comesToFront(first, editor));
}

}
