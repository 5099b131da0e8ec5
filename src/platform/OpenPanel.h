#pragma once

#include "platform/OpenPanelSettings.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

// One file dialog. Main thread only; its end takes it off the screen without an answer.
class OpenPanel {
public:
    enum class Response { ok, cancel };

    virtual ~OpenPanel() = default;

    // Shows it over a window of ours, which it blocks, and calls `ended` once when the user is done or `cancel` is called.
    // `ended` may destroy the panel.
    virtual void beginSheetModal(
        std::uint64_t window, OpenPanelSettings const& settings, std::function<void(Response)> ended)
        = 0;

    // The path that was chosen, or an application as the file opener takes it; absent before an answer and after a cancelled panel.
    virtual std::optional<QString> url() const = 0;

    // Why there was no dialog, in the user's language; empty where there was one.
    virtual QString failure() const = 0;

    virtual void orderOut() = 0;

    // Ends it as the user's cancel does. Nothing when it is not shown.
    virtual void cancel() = 0;
};

}
