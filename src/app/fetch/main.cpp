#include "linux/fetch/FetchFrames.h"
#include "linux/network/HttpDownloads.h"
#include "linux/qt/QtExecutor.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include <unistd.h>

// Fetches one file of the web for the program that started it, and tells it what comes (FetchFrames):
//   quillory-fetch ADDRESS MOST-BYTES SILENCE LONGEST      the times in milliseconds
namespace {

using namespace Quillory;
using FetchFrames::Kind;

constexpr int argumentCount = 5;

bool send(Kind kind, QByteArray const& content)
{
    auto const frame = FetchFrames::encode(kind, content);
    for (qsizetype sent = 0; sent < frame.size();) {
        auto const count = write(
            STDOUT_FILENO, frame.constData() + sent, static_cast<std::size_t>(frame.size() - sent));
        if (count <= 0)
            return false;
        sent += count;
    }
    return true;
}

bool sendBytes(QByteArray const& bytes)
{
    for (qsizetype sent = 0; sent < bytes.size(); sent += FetchFrames::mostBytes) {
        if (!send(Kind::bytes, bytes.mid(sent, FetchFrames::mostBytes)))
            return false;
    }
    return true;
}

// Nothing else is to be done until the answer is there.
bool isAllowed(QUrl const& to)
{
    char answer = 0;
    return send(Kind::redirect, to.toEncoded()) && read(STDIN_FILENO, &answer, 1) == 1
        && answer == FetchFrames::allowed;
}

void sendEnd(std::expected<void, Downloads::Fault> const& result)
{
    send(Kind::end, result ? QByteArray() : QByteArray(1, static_cast<char>(result.error())));
    QCoreApplication::quit();
}

std::chrono::milliseconds milliseconds(char const* argument)
{
    return std::chrono::milliseconds(QByteArray(argument).toLongLong());
}

}

int main(int argc, char* argv[])
{
    if (argc != argumentCount)
        return EXIT_FAILURE;
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication const application(argc, argv);
    QtExecutor executor;
    HttpDownloads downloads(executor);
    Downloads::Request const request { QUrl::fromEncoded(argv[1]), isAllowed, QByteArray(argv[2]).toLongLong(),
        milliseconds(argv[3]), milliseconds(argv[4]) };
    auto const download = downloads.start(request, sendBytes, sendEnd);
    return QCoreApplication::exec();
}
