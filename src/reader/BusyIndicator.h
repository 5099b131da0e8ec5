#pragma once

#include "platform/Executor.h"

#include <QWidget>

#include <chrono>

namespace Quillory {

// A small arc that turns while something goes on. Most loads are over before it would be seen: it appears after a moment,
// and costs nothing while it is hidden. GUI thread only.
class BusyIndicator : public QWidget {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds appearsAfter { 150 };

    // The executor outlives it. Takes its room whether it shows or not.
    BusyIndicator(Executor& executor, QWidget* parent);

    void setBusy(bool isBusy);
    bool isTurning() const { return m_state == State::turning; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    enum class State { idle, waiting, turning };

    void turn();

    Executor& m_executor;
    State m_state = State::idle;
    int m_step = 0;
    Registration m_next;
};

}
