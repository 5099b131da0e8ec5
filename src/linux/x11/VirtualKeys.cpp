#include "linux/x11/VirtualKeys.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace Quillory::VirtualKeys {

namespace {

struct Row {
    std::uint16_t virtualKeyCode;
    std::uint16_t evdevCode;
};

constexpr auto table = std::to_array<Row>({
    // Letters
    { 0, KEY_A },
    { 11, KEY_B },
    { 8, KEY_C },
    { 2, KEY_D },
    { 14, KEY_E },
    { 3, KEY_F },
    { 5, KEY_G },
    { 4, KEY_H },
    { 34, KEY_I },
    { 38, KEY_J },
    { 40, KEY_K },
    { 37, KEY_L },
    { 46, KEY_M },
    { 45, KEY_N },
    { 31, KEY_O },
    { 35, KEY_P },
    { 12, KEY_Q },
    { 15, KEY_R },
    { 1, KEY_S },
    { 17, KEY_T },
    { 32, KEY_U },
    { 9, KEY_V },
    { 13, KEY_W },
    { 7, KEY_X },
    { 16, KEY_Y },
    { 6, KEY_Z },
    // Digits and signs
    { 18, KEY_1 },
    { 19, KEY_2 },
    { 20, KEY_3 },
    { 21, KEY_4 },
    { 23, KEY_5 },
    { 22, KEY_6 },
    { 26, KEY_7 },
    { 28, KEY_8 },
    { 25, KEY_9 },
    { 29, KEY_0 },
    { 27, KEY_MINUS },
    { 24, KEY_EQUAL },
    { 33, KEY_LEFTBRACE },
    { 30, KEY_RIGHTBRACE },
    { 41, KEY_SEMICOLON },
    { 39, KEY_APOSTROPHE },
    { 50, KEY_GRAVE },
    { 42, KEY_BACKSLASH },
    { 43, KEY_COMMA },
    { 47, KEY_DOT },
    { 44, KEY_SLASH },
    { 10, KEY_102ND },
    // Editing and moving; Help stands where Insert is
    { 36, KEY_ENTER },
    { 48, KEY_TAB },
    { 49, KEY_SPACE },
    { 51, KEY_BACKSPACE },
    { 53, KEY_ESC },
    { 117, KEY_DELETE },
    { 114, KEY_INSERT },
    { 115, KEY_HOME },
    { 119, KEY_END },
    { 116, KEY_PAGEUP },
    { 121, KEY_PAGEDOWN },
    { 123, KEY_LEFT },
    { 124, KEY_RIGHT },
    { 125, KEY_DOWN },
    { 126, KEY_UP },
    // Modifiers
    { 55, KEY_LEFTMETA },
    { 54, KEY_RIGHTMETA },
    { 56, KEY_LEFTSHIFT },
    { 60, KEY_RIGHTSHIFT },
    { 58, KEY_LEFTALT },
    { 61, KEY_RIGHTALT },
    { 59, KEY_LEFTCTRL },
    { 62, KEY_RIGHTCTRL },
    { 57, KEY_CAPSLOCK },
    // Function keys
    { 122, KEY_F1 },
    { 120, KEY_F2 },
    { 99, KEY_F3 },
    { 118, KEY_F4 },
    { 96, KEY_F5 },
    { 97, KEY_F6 },
    { 98, KEY_F7 },
    { 100, KEY_F8 },
    { 101, KEY_F9 },
    { 109, KEY_F10 },
    { 103, KEY_F11 },
    { 111, KEY_F12 },
    { 105, KEY_F13 },
    { 107, KEY_F14 },
    { 113, KEY_F15 },
    { 106, KEY_F16 },
    { 64, KEY_F17 },
    { 79, KEY_F18 },
    { 80, KEY_F19 },
    { 90, KEY_F20 },
    // Keypad; Clear stands where NumLock is
    { 82, KEY_KP0 },
    { 83, KEY_KP1 },
    { 84, KEY_KP2 },
    { 85, KEY_KP3 },
    { 86, KEY_KP4 },
    { 87, KEY_KP5 },
    { 88, KEY_KP6 },
    { 89, KEY_KP7 },
    { 91, KEY_KP8 },
    { 92, KEY_KP9 },
    { 71, KEY_NUMLOCK },
    { 65, KEY_KPDOT },
    { 75, KEY_KPSLASH },
    { 76, KEY_KPENTER },
    { 81, KEY_KPEQUAL },
    { 78, KEY_KPMINUS },
    { 67, KEY_KPASTERISK },
    { 69, KEY_KPPLUS },
    // Sound, menu, and the keys of Japanese keyboards
    { 72, KEY_VOLUMEUP },
    { 73, KEY_VOLUMEDOWN },
    { 74, KEY_MUTE },
    { 110, KEY_COMPOSE },
    { 93, KEY_YEN },
    { 94, KEY_RO },
    { 95, KEY_KPJPCOMMA },
    { 102, KEY_MUHENKAN },
    { 104, KEY_HENKAN },
});

// The server keeps the first eight key codes for itself.
constexpr std::uint16_t firstServerKeyCode = 8;

}

std::optional<std::uint8_t> serverKeyCode(std::uint16_t virtualKeyCode)
{
    auto row = std::ranges::find(table, virtualKeyCode, &Row::virtualKeyCode);
    if (row == table.end())
        return std::nullopt;
    return static_cast<std::uint8_t>(row->evdevCode + firstServerKeyCode);
}

std::optional<std::uint16_t> virtualKeyCode(std::uint8_t serverKeyCode)
{
    auto row = std::ranges::find_if(
        table, [&](Row const& each) { return each.evdevCode + firstServerKeyCode == serverKeyCode; });
    if (row == table.end())
        return std::nullopt;
    return row->virtualKeyCode;
}

}
