#pragma once

#include <QString>

namespace Quillory {

// The field of a shortcut recorder as its steps use it. Main thread only.
class RecorderField {
public:
    // Why a shortcut was refused, and whether the user can insist on it.
    struct Alert {
        enum class Buttons { ok, okAndForce };
        QString message;
        QString informativeText;
        Buttons buttons = Buttons::ok;
    };

    virtual ~RecorderField() = default;

    // What it shows may have changed.
    virtual void refresh() = 0;

    // From here to the end the field tells of keys, and of buttons that are let go anywhere in the program.
    virtual void startMonitor() = 0;
    virtual void stopMonitor() = 0;

    // Leaves the window without a field that has the keyboard, if this one has it.
    virtual void giveUpFocus() = 0;
    virtual void takeFocus() = 0;

    virtual void beep() = 0;

    // Over the field's window. The field tells how it was answered in a later turn.
    virtual void showAlert(Alert const& alert) = 0;
};

}
