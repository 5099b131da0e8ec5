#include "KeyboardShortcuts/HotKey.h"

#include "KeyboardShortcuts/HotKeyCenter.h"

#include <utility>

namespace Quillory {

HotKey::HotKey(HotKeyCenter& center, std::int64_t keyCode, std::int64_t modifiers, Action keyDown, Action keyUp)
    : carbonKeyCode(keyCode)
    , carbonModifiers(modifiers)
    , combination(Shortcut { keyCode, modifiers }.combination())
    , onKeyDown(std::move(keyDown))
    , onKeyUp(std::move(keyUp))
    , id(center.nextHotKeyId())
    , m_center(center)
{
}

HotKey::~HotKey()
{
    eventHotKeyRef.end();
    m_center.forget(id);
}

}
