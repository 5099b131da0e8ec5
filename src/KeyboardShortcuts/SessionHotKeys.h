#pragma once

#include "platform/DesktopHotKeys.h"
#include "platform/HotKeys.h"

#include <memory>
#include <vector>

namespace Quillory {

// The hot keys of a session where the desktop may bind them: the desktop's own, and as long as it has no such service
// those that the program grabs. All move over when the service comes or goes, and none that is held then stays held.
// Main thread only.
class SessionHotKeys final : public HotKeys {
public:
    // `desktops` are those that `service` binds. All three outlive it.
    SessionHotKeys(HotKeys& grabs, HotKeys& desktops, DesktopHotKeys& service);

    std::expected<Registration, Refusal> registerHotKey(
        std::uint16_t keyCode, ModifierFlags modifiers, Handler handler) override;
    void yieldKeyboard() override { m_current->yieldKeyboard(); }
    std::expected<void, Refusal> probe(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        return m_current->probe(keyCode, modifiers);
    }

private:
    struct HotKey {
        std::uint16_t keyCode;
        ModifierFlags modifiers;
        Handler handler;
        bool isRegistered = true;
        bool isDown = false;
        Registration registration; // none while the service of the moment refuses it
    };

    HotKeys& serving() const;
    void follow();
    std::expected<void, Refusal> request(std::shared_ptr<HotKey> const& hotKey);

    HotKeys& m_grabs;
    HotKeys& m_desktops;
    DesktopHotKeys& m_service;
    HotKeys* m_current;
    std::vector<std::shared_ptr<HotKey>> m_hotKeys;
    Registration m_changes;
};

}
