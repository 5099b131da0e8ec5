#pragma once

#include "updates/feed/Release.h"

#include <QString>

#include <cstdint>
#include <functional>

namespace Quillory {

// The one window in which the updater speaks with the user. Each operation takes the place of what it showed; those that
// show something open it where it is closed. Main thread only.
class UpdateWindow {
public:
    struct Offer {
        QString version; // as it is shown to people, like the next
        QString installed;
        Release release;
        std::int64_t size = 0; // of the download, in bytes
    };
    enum class Choice { install, skip, later };
    enum class Tone { news, failure };

    virtual ~UpdateWindow() = default;

    // Calls `chosen` once; a closed window means later.
    virtual void showOffer(Offer const& offer, std::function<void(Choice)> chosen) = 0;

    // Calls `stop` when the user wants no more of it, or closes the window.
    virtual void showProgress(std::int64_t size, std::function<void()> stop) = 0;
    virtual void setProgress(std::int64_t received) = 0;

    // The system's installer has it now. The window can only be closed, which stops nothing.
    virtual void showInstalling() = 0;

    virtual void showMessage(QString const& sentence, Tone tone) = 0;

    virtual void bringToFront() = 0;
    virtual void close() = 0;
};

}
