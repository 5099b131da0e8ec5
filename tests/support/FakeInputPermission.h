#pragma once

#include "platform/InputPermission.h"

namespace Quillory {

class FakeInputPermission final : public InputPermission {
public:
    bool isAccessibilityTrusted() const override { return isTrusted; }
    bool canListenToEvents() const override { return canListen; }
    bool canBeGranted() const override { return isPossible; }
    void requestListenAccess() override { ++requests; }

    bool isTrusted = false;
    bool canListen = true;
    bool isPossible = true;
    int requests = 0;
};

}
