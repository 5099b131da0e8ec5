#pragma once

#include <QString>

#include <chrono>
#include <functional>

namespace Quillory {

// The desktop's pasteboards for text. Main thread only.
class Clipboard {
public:
    // How long what was copied says so: long enough to be noticed, over before the next copy.
    static constexpr std::chrono::milliseconds feedbackTime { 1500 };

    enum class Pasteboard {
        general,
        selection, // what a middle click pastes, where the desktop has it
    };

    virtual ~Clipboard() = default;

    // Puts `text` in the place of what is there. True when the pasteboard holds it afterwards, whoever keeps it.
    virtual bool setText(Pasteboard pasteboard, QString const& text) = 0;

    // The same with a text that is made only when somebody asks for it, each time; until it is replaced, possibly as long
    // as the program runs. False when the desktop has no such pasteboard.
    virtual bool offerText(Pasteboard pasteboard, std::function<QString()> text) = 0;

    // Empty when it holds no text.
    virtual QString text(Pasteboard pasteboard) const = 0;
};

}
