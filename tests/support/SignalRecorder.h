#pragma once

#include <QDBusMessage>
#include <QObject>

namespace Quillory {

// Keeps the signals that a bus brings.
class SignalRecorder final : public QObject {
    Q_OBJECT
public Q_SLOTS:
    void record(QDBusMessage const& message) { heard.append(message); }

public:
    QList<QDBusMessage> heard;
};

}
