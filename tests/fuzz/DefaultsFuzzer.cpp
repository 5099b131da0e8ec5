#include "fuzz/Fuzzer.h"

#include "library/LibraryStore.h"
#include "platform/linux/files/JsonUserDefaults.h"
#include "support/FakeLibraryServices.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

using namespace Quillory;

void write(QString const& path, QByteArray const& bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

// The store starts with whatever the entries are, and with what it may hold.
void startStore(JsonUserDefaults& defaults)
{
    FakeLibraryServices fakes;
    auto const others = fakes.services();
    LibraryStore store(
        { defaults, others.bookmarks, others.files, others.pictures, others.events, others.executor, others.clipboard,
            others.announcements, others.fileOpener, others.openPanels, others.workspace },
        LibraryStore::RestoreFolder::yes);
    require(store.textSize.value() >= Preferences::minimumTextSize);
    require(store.textSize.value() <= Preferences::maximumTextSize);
    store.shutdown();
}

}

// Any settings file lets the program start, and what is set then is there at the next start.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static QTemporaryDir const folder;
    auto const path = folder.filePath(QStringLiteral("defaults.json"));
    write(path, bytesOf(data, size));
    ManualExecutor executor;
    bool wasDamaged = false;
    {
        JsonUserDefaults defaults(path, executor);
        wasDamaged = defaults.damagedFile().has_value();
        if (wasDamaged)
            require(QFile::remove(*defaults.damagedFile()));
        startStore(defaults);
        defaults.setValue(QStringLiteral("textSize"), 17.0);
    }
    JsonUserDefaults const again(path, executor);
    require(!again.damagedFile() && again.get<double>(QStringLiteral("textSize")) == 17.0);
    return 0;
}
