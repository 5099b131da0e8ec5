#pragma once

#include "platform/Announcements.h"

#include <utility>
#include <vector>

namespace Quillory {

// Records what would have been spoken.
class FakeAnnouncements final : public Announcements {
public:
    void announce(QString const& text, Priority priority) override { announced.emplace_back(text, priority); }

    std::vector<std::pair<QString, Priority>> announced;
};

}
