#pragma once

#include "KeyboardShortcuts/HotKey.h"
#include "KeyboardShortcuts/Shortcut.h"
#include "platform/HotKeys.h"
#include "platform/LocalKeyEvents.h"
#include "platform/NotificationCenter.h"

#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <vector>

namespace Quillory {

// All hot keys of the program. While one of its menus is open the system's hot keys don't come, since the menu has
// the keyboard: the center then drops them and looks at the program's own key events instead. Main thread only.
class HotKeyCenter {
public:
    enum class Mode { disabled, normal, menuOpen };
    enum class Pause { off, on };

    // All three outlive it.
    HotKeyCenter(HotKeys& hotKeys, LocalKeyEvents& localKeyEvents, NotificationCenter& notifications);

    // False when the system refuses it. In a mode other than normal the system has it for this trial only.
    bool registerHotKey(std::shared_ptr<HotKey> const& hotKey);

    // Lets other programs have other keys again while one of these is still held.
    void yieldKeyboard() { m_service.yieldKeyboard(); }

    // While paused no hot key fires, so that the keys reach whoever records them.
    void setPaused(Pause pause);
    Pause paused() const { return m_paused; }

    // By a trial: whether another program holds the shortcut, and whether it can't be had whoever holds what.
    bool isHeldByAnother(Shortcut const& shortcut) const;
    bool isImpossible(Shortcut const& shortcut) const;

    Mode mode() const { return m_mode; }

    // For the hot keys themselves: ids are unique within the process, from 1 on.
    std::uint32_t nextHotKeyId() { return ++m_lastHotKeyId; }
    void forget(std::uint32_t id) { m_hotKeys.erase(id); }

private:
    enum class Menu { closed, open };

    bool request(HotKey& hotKey);
    std::expected<void, HotKeys::Refusal> probe(Shortcut const& shortcut) const;
    std::vector<std::shared_ptr<HotKey>> living() const;
    void setMenu(Menu menu);
    void updateMode();
    void applyMode();
    void registerAll();
    void handleHotKey(std::uint32_t id, HotKeys::Phase phase) const;
    LocalKeyEvents::Answer handleRawKey(RawKeyEvent const& event) const;

    HotKeys& m_service;
    LocalKeyEvents& m_localKeyEvents;
    std::uint32_t m_lastHotKeyId = 0;
    std::map<std::uint32_t, std::weak_ptr<HotKey>> m_hotKeys;
    bool m_handlesEvents = false; // from the first registration on
    Pause m_paused = Pause::off;
    Menu m_menu = Menu::closed;
    Mode m_mode = Mode::normal;
    Registration m_rawKeyEvents;
    Registration m_openMenuObserver;
    Registration m_closeMenuObserver;
};

}
