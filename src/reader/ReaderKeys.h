#pragma once

#include "reader/ReaderCommand.h"
#include "reader/text/ReaderTextView.h"

#include <QObject>

#include <functional>

class QKeyEvent;
class QLineEdit;
class QWheelEvent;

namespace Quillory {

// The command keys of the window, also where a field would take them for itself, and the wheel with Ctrl over the text.
// What a running peek holds is no modifier. GUI thread only.
class ReaderKeys : public QObject {
    Q_OBJECT
public:
    std::function<void(ReaderCommand)> perform = [](ReaderCommand) { };
    // By so many points.
    std::function<void(int)> changeTextSize = [](int) { };

    // Belongs to the view of the text.
    explicit ReaderKeys(ReaderTextView& text);

    void watch(QLineEdit& field);

    // Performs what the key stands for; false when that is nothing.
    bool take(QKeyEvent const& event);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool turnTextSize(QWheelEvent const& wheel);

    ReaderTextView& m_text;
    int m_wheelTurned = 0; // in eighths of a degree, towards the next step
};

}
