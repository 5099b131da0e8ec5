#include "linux/fetch/FetchProcess.h"

#include <QUrl>

#include <csignal>
#include <utility>

#include <linux/close_range.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace Quillory {

namespace {

using Milliseconds = std::chrono::milliseconds;

QString inMilliseconds(std::chrono::nanoseconds time)
{
    return QString::number(std::chrono::duration_cast<Milliseconds>(time).count());
}

// In the new process: it ends with this one, gets signals, and none of our descriptors but the three.
void prepareProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
}

// One byte that says which fault it was; anything else is none of ours.
Downloads::Fault faultOf(QByteArray const& content)
{
    constexpr auto last = static_cast<int>(Downloads::Fault::unwanted);
    auto const number = content.size() == 1 ? static_cast<unsigned char>(content[0]) : last + 1;
    return number <= last ? static_cast<Downloads::Fault>(number) : Downloads::Fault::interrupted;
}

}

FetchProcess::FetchProcess(Executor& executor, QString const& program, Downloads::Request request,
    Downloads::Received received, Downloads::Done done)
    : m_executor(executor)
    , m_request(std::move(request))
    , m_received(std::move(received))
    , m_done(std::move(done))
    , m_deadline(executor.after(m_request.longest, [this] { finish(std::unexpected(Downloads::Fault::timedOut)); }))
{
    m_process.setChildProcessModifier(prepareProcess);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &FetchProcess::read);
    auto const ended = [this] {
        read();
        finish(std::unexpected(Downloads::Fault::interrupted)); // unless it has said otherwise
    };
    connect(&m_process, &QProcess::finished, this, ended);
    connect(&m_process, &QProcess::errorOccurred, this, ended);
    hearFrom();
    m_process.start(program,
        { QString::fromLatin1(m_request.address.toEncoded()), QString::number(m_request.mostBytes),
            inMilliseconds(m_request.longestSilence), inMilliseconds(m_request.longest) });
}

FetchProcess::~FetchProcess()
{
    m_process.disconnect(this);
    m_process.kill();
    m_process.waitForFinished();
}

void FetchProcess::read()
{
    m_buffer += m_process.readAllStandardOutput();
    if (FetchFrames::contentLength(m_buffer).value_or(0) > FetchFrames::mostBytes)
        return finish(std::unexpected(Downloads::Fault::interrupted));
    while (auto const frame = FetchFrames::take(m_buffer)) {
        if (!m_done)
            return;
        hearFrom();
        take(*frame);
    }
}

void FetchProcess::take(FetchFrames::Frame const& frame)
{
    switch (frame.kind) {
    case FetchFrames::Kind::bytes:
        return takeBytes(frame.content);
    case FetchFrames::Kind::redirect:
        if (!m_request.allows(QUrl::fromEncoded(frame.content)))
            return finish(std::unexpected(Downloads::Fault::refused));
        m_process.putChar(FetchFrames::allowed);
        return;
    case FetchFrames::Kind::end:
        if (frame.content.isEmpty())
            return finish({});
        return finish(std::unexpected(faultOf(frame.content)));
    }
    finish(std::unexpected(Downloads::Fault::interrupted));
}

void FetchProcess::takeBytes(QByteArray const& bytes)
{
    m_bytes += bytes.size();
    if (m_bytes > m_request.mostBytes)
        finish(std::unexpected(Downloads::Fault::tooLarge));
    else if (!m_received(bytes))
        finish(std::unexpected(Downloads::Fault::unwanted));
}

void FetchProcess::hearFrom()
{
    m_silence = m_executor.after(
        m_request.longestSilence, [this] { finish(std::unexpected(Downloads::Fault::timedOut)); });
}

// Told in a turn of its own, after which this object may end. The first outcome counts.
void FetchProcess::finish(std::expected<void, Downloads::Fault> result)
{
    if (!m_done)
        return;
    m_silence.end();
    m_deadline.end();
    m_finish = m_executor.post([done = std::exchange(m_done, nullptr), result]() mutable { done(result); });
}

}
