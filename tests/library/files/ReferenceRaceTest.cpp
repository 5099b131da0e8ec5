#include "library/LibraryReference.h"
#include "platform/linux/files/PosixFileSystem.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <fstream>
#include <iostream>
#include <thread>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;

constexpr int leastReads = 100'000;

// A library, a place outside of it, and somebody who keeps swapping what stands at the library's names.
class Swapper {
public:
    Swapper()
    {
        for (auto const* folder : { "library", "library/pics", "library/away", "outside" })
            mkdir(at(folder).constData(), 0755);
        write("library/away/x.png", "inside");
        write("library/pics/x.png", "inside");
        write("outside/x.png", "outside");
        symlink(at("outside/x.png").constData(), at("link to file").constData());
        symlink(at("outside").constData(), at("link to folder").constData());
        mkfifo(at("fifo").constData(), 0644);
        write("library/x.png", "inside");
    }

    QString library() const { return m_folder.filePath(u"library"_s); }

    void run(std::atomic<bool> const& isOver)
    {
        while (!isOver) {
            exchange("library/x.png", "link to file");
            exchange("library/pics", "link to folder");
            exchange("library/x.png", "link to file");
            exchange("library/x.png", "fifo");
            exchange("library/pics", "link to folder");
            exchange("library/x.png", "fifo");
            moveAwayAndBack();
            swaps += 8;
        }
    }

    std::atomic<int> swaps = 0;

private:
    QByteArray at(QByteArray const& name) const { return QFile::encodeName(m_folder.path()) + '/' + name; }

    void write(QByteArray const& name, QByteArray const& contents) const
    {
        std::ofstream(at(name).constData(), std::ios::binary) << contents.toStdString();
    }

    void exchange(QByteArray const& a, QByteArray const& b) const
    {
        renameat2(AT_FDCWD, at(a).constData(), AT_FDCWD, at(b).constData(), RENAME_EXCHANGE);
    }

    // The folder holds a secret only while it is outside, and the secret stays there.
    void moveAwayAndBack() const
    {
        rename(at("library/away").constData(), at("moved").constData());
        rename(at("moved/x.png").constData(), at("kept").constData());
        write("moved/x.png", "outside");
        rename(at("moved/x.png").constData(), at("outside/secret").constData());
        rename(at("kept").constData(), at("moved/x.png").constData());
        rename(at("moved").constData(), at("library/away").constData());
    }

    QTemporaryDir m_folder;
};

TEST(ReferenceRace, No_read_gives_bytes_from_outside_while_files_and_folders_are_swapped)
{
    Swapper swapper;
    PosixFileSystem const files;
    auto const folder = files.openFolder(swapper.library()).value();
    std::atomic<bool> isOver = false;
    std::thread thread([&] { swapper.run(isOver); });

    int reads = 0;
    int inside = 0;
    int refused = 0;
    int outside = 0;
    auto const note = [&](std::optional<QByteArray> const& bytes) {
        ++reads;
        auto& count = !bytes ? refused : *bytes == "inside" ? inside : outside;
        ++count;
    };
    while (reads < leastReads || inside == 0 || refused == 0) {
        for (auto const& reference : { u"x.png"_s, u"pics/x.png"_s, u"away/x.png"_s }) {
            auto const path = resolveLibraryReference(reference, *folder);
            note(path ? readLibraryFile(*path, *folder, 100) : std::nullopt);
            note(readLibraryFile(reference.toUtf8(), *folder, 100)); // as if the check had long passed
        }
    }
    isOver = true;
    thread.join();
    std::cout << reads << " reads, " << inside << " from inside, " << refused << " refused, " << outside
              << " from outside; " << swapper.swaps << " swaps\n";
    EXPECT_EQ(outside, 0);
    EXPECT_GT(swapper.swaps, 0);
}

}
}
