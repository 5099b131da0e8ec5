#include "linux/x11/VirtualKeys.h"

#include <gmock/gmock.h>

#include <set>

namespace Quillory {
namespace {

TEST(VirtualKeys, Keys_keep_their_places)
{
    struct Case {
        std::uint16_t virtualKeyCode;
        std::uint8_t serverKeyCode;
        char const* key;
    };
    for (auto const& [virtualKeyCode, serverKeyCode, key] : std::initializer_list<Case> { { 0, 38, "A" },
             { 40, 45, "K" }, { 18, 10, "1" }, { 23, 14, "5" }, { 22, 15, "6" }, { 29, 19, "0" }, { 36, 36, "Return" },
             { 49, 65, "Space" }, { 53, 9, "Escape" }, { 51, 22, "Delete backward" }, { 122, 67, "F1" },
             { 111, 96, "F12" }, { 90, 198, "F20" }, { 126, 111, "Up" }, { 123, 113, "Left" }, { 91, 80, "Keypad 8" },
             { 92, 81, "Keypad 9" }, { 76, 104, "Keypad Enter" }, { 55, 133, "Left Super" } }) {
        SCOPED_TRACE(key);
        EXPECT_EQ(VirtualKeys::serverKeyCode(virtualKeyCode), serverKeyCode);
        EXPECT_EQ(VirtualKeys::virtualKeyCode(serverKeyCode), virtualKeyCode);
    }
}

TEST(VirtualKeys, No_two_keys_share_a_place)
{
    std::set<std::uint8_t> places;
    int keys = 0;
    for (std::uint16_t code = 0; code < 256; ++code) {
        auto const place = VirtualKeys::serverKeyCode(code);
        if (!place)
            continue;
        ++keys;
        places.insert(*place);
        EXPECT_EQ(VirtualKeys::virtualKeyCode(*place), code);
    }
    EXPECT_EQ(places.size(), static_cast<std::size_t>(keys));
    EXPECT_GT(keys, 100);
}

}
}
