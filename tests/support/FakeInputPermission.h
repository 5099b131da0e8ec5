#pragma once

#include "platform/InputPermission.h"

namespace Quillory {

class FakeInputPermission final : public InputPermission {
public:
    bool isAccessibilityTrusted() const override { return isTrusted; }
    bool canListenToEvents() const override { return canListen; }
    void requestListenAccess() override { ++requests; }

    bool isTrusted = false;
    bool canListen = true;
    int requests = 0;
};

}
