#include "Starts.h"

#include <QProcess>

namespace Quillory {

std::expected<std::vector<Summons::Milliseconds>, QString> timeStarts(
    Summons& summons, QString const& program, int times)
{
    std::vector<Summons::Milliseconds> results;
    for (int round = 0; round < times; ++round) {
        if (summons.isGrabbed())
            return std::unexpected(QStringLiteral("Some program holds the shortcut already."));
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        auto const began = std::chrono::steady_clock::now();
        process.start(program, QStringList());
        if (auto const grabbed = summons.waitUntilGrabbed(); !grabbed)
            return std::unexpected(grabbed.error());
        results.push_back(std::chrono::steady_clock::now() - began);
        process.terminate();
        if (!process.waitForFinished() || process.exitCode() != 0)
            return std::unexpected(QStringLiteral("%1 did not end in order.").arg(program));
    }
    return results;
}

}
