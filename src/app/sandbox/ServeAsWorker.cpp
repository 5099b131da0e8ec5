#include "app/sandbox/ServeAsWorker.h"

#include "library/ForeignBytes.h"
#include "linux/qt/QtPictureDecoder.h"
#include "linux/worker/Confinement.h"
#include "linux/worker/WorkerMain.h"

#include <QThreadPool>

#include <cstdlib>

namespace Quillory {

std::optional<int> serveAsWorker(int argc, char const* const* argv)
{
    if (!isWorkerStart(argc, argv))
        return std::nullopt;
    endWithParent();
    QtPictureDecoder const decoder;
    // On a thread of the toolkit's pool: elsewhere it would hand large pictures to the pool, whose threads open descriptors
    // when they start, which a worker may not.
    auto exitCode = EXIT_FAILURE;
    auto* const pool = QThreadPool::globalInstance();
    pool->start([&] {
        exitCode = runWorker([&] {
            QtPictureDecoder::loadPlugins();
            return ForeignBytes::interpreter(decoder);
        });
    });
    pool->waitForDone();
    return exitCode;
}

}
