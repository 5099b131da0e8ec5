#include "library/LibraryStore.h"

#include "support/FakeLibraryServices.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <deque>
#include <map>
#include <memory>
#include <random>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Time = std::chrono::nanoseconds;

// What a store must show, worked out from the rules alone: one task at most, of the latest generation, and only its own
// outcome counts.
struct Model {
    using Folder = std::map<QString, QString>; // id to title

    struct Load {
        int task = 0;
        QString folder;
        std::optional<Folder> found; // absent for a folder that could not be listed
    };
    struct Timer {
        Time due {};
        int arrival = 0;
    };

    std::map<QString, std::optional<Folder>> disk;
    std::optional<QString> folder;
    int generation = 0;
    bool busy = false;
    bool hasMessage = false;
    Folder sheets;
    std::optional<QString> selected;

    Time now {};
    int arrivals = 0;
    int task = 0; // the one whose outcome counts
    std::optional<Timer> start; // of the task
    std::optional<Timer> delivery; // of an event
    std::deque<Load> queued;
    std::deque<Load> finished;
    int applied = 0; // outcomes that counted, so that a test can tell that they came about
    int failures = 0;
    int dropped = 0;

    Timer timer(Time delay) { return { now + delay, ++arrivals }; }

    void connect(QString const& path)
    {
        delivery.reset();
        busy = false;
        ++generation;
        folder = path;
        sheets.clear();
        hasMessage = false;
        reload(0ms);
    }

    void reload(Time pause)
    {
        if (!folder)
            return;
        ++task;
        start = timer(pause);
    }

    void fire(QString const& path)
    {
        if (path == folder && !delivery)
            delivery = timer(LibraryWatcher::latency);
    }

    void advance(Time duration)
    {
        auto const end = now + duration;
        for (;;) {
            bool const isDelivery = delivery && delivery->due <= end
                && (!start || std::pair(delivery->due, delivery->arrival) < std::pair(start->due, start->arrival));
            auto& next = isDelivery ? delivery : start;
            if (!next || next->due > end)
                break;
            now = next->due;
            next.reset();
            if (isDelivery) {
                reload(LibraryStore::reloadDebounce);
            } else {
                busy = true;
                queued.push_back({ task, *folder, {} });
            }
        }
        now = end;
    }

    void runWork()
    {
        if (queued.empty())
            return;
        finished.push_back(queued.front());
        queued.pop_front();
        finished.back().found = disk[finished.back().folder];
    }

    void finishWork(std::size_t index)
    {
        if (index >= finished.size())
            return;
        auto const load = finished[index];
        finished.erase(finished.begin() + static_cast<std::ptrdiff_t>(index));
        if (load.task != task) {
            ++dropped;
            return;
        }
        busy = false;
        hasMessage = !load.found;
        ++(load.found ? applied : failures);
        if (!load.found)
            return;
        sheets = *load.found;
        if (!selected || !sheets.contains(*selected))
            selected = sheets.empty() ? std::nullopt : std::optional(sheets.begin()->first);
    }

    void shutdown()
    {
        ++task;
        start.reset();
        delivery.reset();
        busy = false;
    }
};

class LibraryStoreModelTest : public testing::Test {
protected:
    static constexpr int steps = 100;

    void beginRound()
    {
        store.reset();
        services = std::make_unique<FakeLibraryServices>();
        store = std::make_unique<LibraryStore>(services->services(), LibraryStore::RestoreFolder::no);
        model = {};
        for (auto const& path : folders)
            putFolderBack(path);
    }

    void putFolderBack(QString const& path)
    {
        services->files.addFolder(path);
        if (!model.disk[path])
            model.disk[path].emplace();
    }

    void removeFolder(QString const& path)
    {
        services->files.removeFolder(path);
        model.disk[path].reset();
    }

    void save(QString const& path)
    {
        putFolderBack(path);
        auto const id = QString(QChar(u'a' + pick(3))) + u".md"_s;
        if (pick(4) == 0) {
            services->files.remove(path, id.toUtf8());
            model.disk[path]->erase(id);
            return;
        }
        auto const title = QString::number(random() % 5);
        services->files.write(path, id.toUtf8(), "# " + title.toUtf8());
        (*model.disk[path])[id] = title;
    }

    void step()
    {
        auto const path = folders[pick(2)];
        switch (pick(14)) {
        case 0:
            store->connect(path);
            return model.connect(path);
        case 1:
            store->refresh();
            return model.reload(0ms);
        case 2:
            store->reload(LibraryStore::Debounced::yes);
            return model.reload(LibraryStore::reloadDebounce);
        case 3:
        case 4:
            save(path);
            services->events.fire(path);
            return model.fire(path);
        case 5:
            if (pick(2) == 0)
                removeFolder(path);
            services->events.fire(path);
            return model.fire(path);
        case 6:
        case 7:
            services->executor.runWork();
            return model.runWork();
        case 8:
        case 9:
            return finishOne();
        case 10:
            return workOff();
        default:
            return advance(pick(3) == 0 ? Time(0) : Time(std::chrono::microseconds(random() % 170'000)));
        }
    }

    // The workers have time for all that is due, and bring it in whatever order.
    void workOff()
    {
        advance(0ms);
        while (!model.queued.empty()) {
            services->executor.runWork();
            model.runWork();
        }
        while (!model.finished.empty())
            finishOne();
    }

    void finishOne()
    {
        auto const index = static_cast<std::size_t>(pick(3));
        services->executor.finishWork(index);
        model.finishWork(index);
    }

    void advance(Time duration)
    {
        services->executor.advance(duration);
        model.advance(duration);
    }

    void compare() const
    {
        ASSERT_EQ(store->busy.value(), model.busy);
        ASSERT_EQ(store->generation.value(), model.generation);
        ASSERT_EQ(store->message.value().has_value(), model.hasMessage);
        Model::Folder shown;
        for (auto const& sheet : store->sheets.value())
            shown[sheet.id] = sheet.title;
        ASSERT_EQ(shown, model.sheets);
        ASSERT_EQ(store->selectedID.value(), model.selected);
        ASSERT_EQ(services->defaults.get<QString>(u"lastSheet"_s), model.selected);
        ASSERT_EQ(services->executor.queuedWork(), model.queued.size());
    }

    quint32 pick(quint32 bound) { return static_cast<quint32>(random() % bound); }

    std::vector<QString> folders { u"/one"_s, u"/two"_s };
    std::mt19937 random { 20 };
    Model model;
    std::unique_ptr<FakeLibraryServices> services;
    std::unique_ptr<LibraryStore> store;
};

TEST_F(LibraryStoreModelTest, In_any_order_of_events_the_store_shows_what_the_rules_give)
{
    int applied = 0;
    int failures = 0;
    int dropped = 0;
    for (int round = 0; round < 500; ++round) {
        beginRound();
        for (int count = 0; count < steps; ++count) {
            SCOPED_TRACE(testing::Message() << "round " << round << ", step " << count);
            step();
            compare();
            if (HasFatalFailure())
                return;
        }
        store->shutdown();
        model.shutdown();
        for (int rest = 0; rest < 5; ++rest) {
            advance(100ms);
            services->executor.runWork();
            model.runWork();
            finishOne();
        }
        compare();
        applied += model.applied;
        failures += model.failures;
        dropped += model.dropped;
    }
    EXPECT_GT(applied, 1000);
    EXPECT_GT(failures, 200);
    EXPECT_GT(dropped, 1000);
    RecordProperty("applied", applied);
    RecordProperty("failures", failures);
    RecordProperty("dropped", dropped);
}

}
}
