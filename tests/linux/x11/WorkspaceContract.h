#pragma once

#include "platform/Workspace.h"
#include "support/Test.h"

#include <vector>

namespace Quillory {

inline void PrintTo(RunningApplication const& application, std::ostream* out)
{
    *out << application.bundleIdentifier.toStdString() << " (window " << application.window << ")";
}

// An afternoon at a desk with windows of other programs and of ours. A window that opens comes to the front; `choose`
// is the user's click into one, `comesTrue` waits for a condition as long as the desk may need.
template<typename Desk>
void tellsWhatIsInFrontAndHandsItOver(Desk& desk, Workspace& workspace)
{
    auto const editor = u"Editor"_s, terminal = u"Terminal"_s, ours = workspace.mainBundleIdentifier();
    auto const comesToFront = [&](std::uint64_t window, QString const& identifier) {
        return desk.comesTrue(
            [&] { return workspace.frontmostApplication() == RunningApplication { identifier, window }; });
    };
    auto const first = desk.open(editor);
    ASSERT_TRUE(comesToFront(first, editor));
    std::vector<RunningApplication> noticed, expected;
    auto observation = workspace.observeActivation([&](auto const& application) { noticed.push_back(application); });
    auto const isNoticed = [&](std::uint64_t window, QString const& identifier) {
        expected.push_back({ identifier, window });
        EXPECT_TRUE(desk.comesTrue([&] { return noticed.size() == expected.size(); }));
        EXPECT_EQ(noticed, expected);
    };
    auto const second = desk.open(terminal);
    isNoticed(second, terminal);
    desk.choose(second);
    desk.choose(first);
    isNoticed(first, editor);
    auto const own = desk.openOwn();
    isNoticed(own, ours);
    observation.end();

    auto const third = desk.open(editor);
    ASSERT_TRUE(comesToFront(third, editor));
    for (auto const window : { first, third, first }) {
        SCOPED_TRACE("the very window of two of one class");
        desk.choose(window);
        ASSERT_TRUE(comesToFront(window, editor));
        auto const previous = workspace.frontmostApplication().value();
        workspace.prepareToShow(own);
        workspace.activateIgnoringOtherApps(own);
        ASSERT_TRUE(comesToFront(own, ours));
        workspace.activate(previous);
        EXPECT_TRUE(comesToFront(window, editor));
    }

    desk.close(second);
    workspace.activate({ terminal, second });
    auto const fourth = desk.open(terminal);
    EXPECT_TRUE(comesToFront(fourth, terminal)) << "a window that is gone stands in nobody's way";
    workspace.activate({ editor, first });
    EXPECT_TRUE(comesToFront(first, editor));
    for (auto const window : { third, fourth, own, first })
        desk.close(window);
    EXPECT_TRUE(desk.comesTrue([&] { return !workspace.frontmostApplication(); })) << "an empty desktop";
    EXPECT_EQ(noticed, expected) << "the observation ended";
}

}
