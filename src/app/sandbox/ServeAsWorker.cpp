#include "app/sandbox/ServeAsWorker.h"

#include "library/ForeignBytes.h"
#include "linux/qt/QtPictureDecoder.h"
#include "linux/worker/WorkerMain.h"

namespace Quillory {

std::optional<int> serveAsWorker(int argc, char const* const* argv)
{
    if (!isWorkerStart(argc, argv))
        return std::nullopt;
    QtPictureDecoder const decoder;
    return runWorker([&] {
        QtPictureDecoder::loadPlugins();
        return ForeignBytes::interpreter(decoder);
    });
}

}
