#pragma once

#include "linux/fetch/FetchFrames.h"
#include "platform/Downloads.h"
#include "platform/Executor.h"

#include <QObject>
#include <QProcess>

#include <cstdint>

namespace Quillory {

// One file, fetched by a process of its own that ends with this object. Its word counts for nothing: sizes, times and
// addresses are held against the request here. Main thread only.
class FetchProcess final : public QObject {
    Q_OBJECT
public:
    FetchProcess(Executor& executor, QString const& program, Downloads::Request request, Downloads::Received received,
        Downloads::Done done);
    ~FetchProcess() override;

private:
    void read();
    void take(FetchFrames::Frame const& frame);
    void takeBytes(QByteArray const& bytes);
    void hearFrom();
    void finish(std::expected<void, Downloads::Fault> result);

    Executor& m_executor;
    Downloads::Request m_request;
    Downloads::Received m_received;
    Downloads::Done m_done;
    QByteArray m_buffer;
    std::int64_t m_bytes = 0;
    Registration m_silence;
    Registration m_deadline;
    Registration m_finish;
    QProcess m_process;
};

}
