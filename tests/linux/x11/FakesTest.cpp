#include "HotKeysContract.h"
#include "WorkspaceContract.h"

#include "support/FakeHotKeys.h"
#include "support/FakeKeyState.h"
#include "support/FakeWorkspace.h"

namespace Quillory {
namespace {

TEST(FakeHotKeys, In_any_order_of_keys_and_registrations_each_has_its_own_phases)
{
    struct {
        FakeHotKeys hotKeys;
        FakeKeyState keys;
        void press(std::uint16_t key)
        {
            keys.down.insert(key);
            hotKeys.press(key, keys.flags());
        }
        void release(std::uint16_t key)
        {
            keys.down.erase(key);
            hotKeys.release(key);
        }
        void letAnotherProgramHave(std::uint16_t key, ModifierFlags modifiers)
        {
            hotKeys.refusals.push_back({ { key, modifiers }, HotKeys::Refusal::Reason::taken });
        }
    } desk;
    tellsEachHotKeyItsOwnPhases(desk, desk.hotKeys);
}

TEST(FakeWorkspace, It_tells_what_is_in_front_and_hands_it_over)
{
    struct {
        FakeWorkspace workspace;
        std::uint64_t last = 0;
        std::uint64_t open(QString const& windowClass)
        {
            workspace.open({ windowClass, ++last });
            workspace.bringToFront(last);
            return last;
        }
        std::uint64_t openOwn() { return open(workspace.mainBundleIdentifier()); }
        void close(std::uint64_t window) { workspace.close(window); }
        void choose(std::uint64_t window) { workspace.bringToFront(window); }
        bool comesTrue(std::function<bool()> const& condition) { return condition(); }
    } desk;
    tellsWhatIsInFrontAndHandsItOver(desk, desk.workspace);
}

}
}
