#pragma once

#include "platform/Announcements.h"

namespace Quillory {

// Lines for a screen reader over the accessibility bus. Without one that listens nothing is sent.
class AtSpiAnnouncements final : public Announcements {
public:
    void announce(QString const& text, Priority priority) override;
};

}
