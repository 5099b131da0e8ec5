// A sheet with 100 pictures of 4000 x 3000 pixels: loading it against the decoder alone on the same bytes, loading it
// again unchanged, and the memory of this process at its peak. Pictures are decoded by workers, the decoder alone has one
// thread. The files are made first, in a process of their own, so that their making does not count.
//
//   quillory-bench-pictures

#include "Measure.h"

#include "app/sandbox/ServeAsWorker.h"
#include "library/LibraryLoad.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "linux/worker/WorkerPool.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Quillory;

constexpr int pictures = 100;
constexpr QSize size(4000, 3000);

class CountingSandbox final : public Sandbox {
public:
    std::shared_ptr<SandboxJob> start(SandboxRequest request) override
    {
        ++jobs;
        return m_workers.start(std::move(request));
    }
    void prepare() override { m_workers.prepare(); }

    int jobs = 0; // the sheet's own among them

private:
    WorkerPool m_workers;
};

QString nameOf(int number)
{
    return QStringLiteral("%1.jpg").arg(number);
}

// Shapes and some noise, so that the files are as large as photos are.
void makePictures(QTemporaryDir const& folder)
{
    QImage image(size, QImage::Format_RGB32);
    std::uint32_t noise = 1;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            noise = noise * 1664525U + 1013904223U;
            auto const grain = static_cast<int>(noise >> 28U);
            image.setPixel(x, y, qRgb((x / 16 + grain) & 255, (y / 12 + grain) & 255, ((x + y) / 30 + grain) & 255));
        }
    }
    QFile sheet(folder.filePath(QStringLiteral("sheet.md")));
    if (!sheet.open(QIODevice::WriteOnly))
        qFatal("can't write the sheet");
    for (int number = 0; number < pictures; ++number) {
        for (int x = 0; x < 256; ++x)
            image.setPixel(x, 0, qRgb(number, x, 0));
        if (!image.save(folder.filePath(nameOf(number)), "jpeg", 85))
            qFatal("can't write a picture");
        sheet.write("![](" + nameOf(number).toUtf8() + ")\n");
    }
}

double megabytesOf(char const* entry)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (auto const& line : status.readAll().split('\n')) {
        if (line.startsWith(entry))
            return line.simplified().split(' ').value(1).toDouble() * 1024 / 1e6;
    }
    return 0;
}

// The time of the decoder alone, file by file.
double decoderAlone(QTemporaryDir const& folder, qint64& fileBytes)
{
    QtPictureDecoder const decoder;
    double time = 0;
    for (int number = 0; number < pictures; ++number) {
        QFile file(folder.filePath(nameOf(number)));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("can't read a picture");
        auto const bytes = file.readAll();
        fileBytes += bytes.size();
        time += milliseconds([&] { (void)decoder.thumbnail(bytes, SheetPictures::markdownImageSize); });
    }
    return time;
}

void report(QTemporaryDir const& folder)
{
    PosixFileSystem const files;
    CountingSandbox sandbox;
    LibraryLoad load { .files = files, .sandbox = sandbox, .folder = folder.path() };
    auto const run = [&] {
        do {
            auto loaded = load.run().value();
            load.previous = std::move(loaded.sheets);
            load.earlier = std::make_shared<LoadMemory>(std::move(loaded.memory));
        } while (load.earlier->isUnderWay());
    };
    auto const before = megabytesOf("VmRSS:");
    auto const first = milliseconds(run);
    auto const peak = megabytesOf("VmHWM:");
    auto const after = megabytesOf("VmRSS:");
    auto const jobs = sandbox.jobs;
    auto const sheets = load.previous;
    auto const reload = milliseconds(run);
    qint64 fileBytes = 0;
    auto const alone = decoderAlone(folder, fileBytes);
    std::printf("pictures                   %lld of %d x %d, %.1f MB of files\n",
        static_cast<long long>(sheets.value(0).images.size()), size.width(), size.height(),
        static_cast<double>(fileBytes) / 1e6);
    std::printf("decoder alone              %8.0f ms\n", alone);
    std::printf(
        "load                       %8.0f ms   %.2f times the decoder alone, %d jobs\n", first, first / alone, jobs);
    std::printf("load, nothing changed      %8.0f ms   %d jobs, %s\n", reload, sandbox.jobs - jobs,
        load.previous == sheets ? "equal" : "NOT EQUAL");
    std::printf(
        "resident memory            %8.1f MB before, %.1f MB at the peak, %.1f MB after\n", before, peak, after);
}

}

int main(int argc, char* argv[])
{
    if (auto const exitCode = serveAsWorker(argc, argv))
        return *exitCode;
    QTemporaryDir const folder;
    auto const maker = fork();
    if (maker == 0) {
        makePictures(folder);
        std::fflush(nullptr);
        _exit(0);
    }
    int status = 0;
    if (waitpid(maker, &status, 0) != maker || status != 0)
        return 1;
    report(folder);
    return 0;
}
