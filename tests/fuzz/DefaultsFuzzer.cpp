#include "fuzz/Fuzzer.h"

#include "library/LibraryStore.h"
#include "linux/files/JsonUserDefaults.h"
#include "support/FakeLibraryServices.h"

namespace {

using namespace Quillory;

// The store starts with whatever the entries are, and with what it may hold.
void startStore(JsonUserDefaults& defaults)
{
    FakeLibraryServices fakes;
    LibraryStore store(fakes.services(defaults, fakes.events, fakes.executor), LibraryStore::RestoreFolder::yes);
    require(store.textSize.value() >= Preferences::minimumTextSize);
    require(store.textSize.value() <= Preferences::maximumTextSize);
    store.shutdown();
}

}

// Any settings file lets the program start, and what is set then is there at the next start.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static TemporaryFolder const folder;
    auto const path = folder.path("defaults.json");
    folder.write("defaults.json", bytesOf(data, size));
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
