#include "library/LibraryStore.h"

#include "support/Dice.h"
#include "support/FakeLibraryServices.h"
#include "support/Test.h"

#include <cerrno>
#include <deque>
#include <map>

namespace Quillory {
namespace {

using Time = std::chrono::nanoseconds;
using Folder = std::map<QString, QString>; // id to title

QString const unreadable = u"Could not read the folder. Choose it again or refresh. "_s
    + SystemError(ENOENT).localizedDescription();

// What a store must show, worked out beside it from the rules alone: of loads and of installations there is one each at
// most that counts, and the last outcome has the word. A load that runs is let finish, and one more follows when it was
// asked for meanwhile. A load clears only what a load said.
struct Model {
    using Job = std::shared_ptr<std::optional<Folder>>; // what it finds; absent for a folder that could not be listed

    void shutdown()
    {
        load = installation = nullptr;
        isOutdated = isWatching = false;
        due.reset();
        delivery.reset();
    }
    void connect(QByteArray const& name)
    {
        shutdown();
        isWatching = true;
        folder = name;
        sheets.clear();
        message.reset();
        reload(0ms);
    }
    void reload(Time pause)
    {
        if (!folder.isEmpty())
            due = std::min(due.value_or(Time::max()), now + pause);
    }
    void startLoad()
    {
        due.reset(); // this one sees what that would have
        isOutdated = load != nullptr;
        if (!load)
            queued.push_back(load = std::make_shared<std::optional<Folder>>());
    }
    void install()
    {
        if (!folder.isEmpty())
            queued.push_back(installation = std::make_shared<std::optional<Folder>>());
    }
    void fire(QByteArray const& name)
    {
        if (isWatching && name == folder && !delivery)
            delivery = now + LibraryWatcher::latency;
    }
    void advance(Time duration)
    {
        auto const end = now + duration;
        while (std::min(due.value_or(Time::max()), delivery.value_or(Time::max())) <= end) {
            bool const isDelivery = delivery && (!due || *delivery < *due);
            now = *std::exchange(isDelivery ? delivery : due, std::nullopt);
            isDelivery ? reload(LibraryStore::reloadDebounce) : startLoad();
        }
        now = end;
    }
    void finishLoad(std::optional<Folder> const& found)
    {
        load = nullptr;
        if (!found)
            message = unreadable;
        else if (saysLoad)
            message.reset();
        saysLoad = saysLoad || !found;
        show(found);
        if (isOutdated)
            startLoad();
    }
    void finishInstallation(std::optional<Folder> const& found, std::optional<QString> const& lines)
    {
        installation = nullptr;
        message = lines;
        saysLoad = false;
        show(found);
        if (found && std::exchange(load, nullptr))
            startLoad(); // what the running one has seen is older
    }
    void show(std::optional<Folder> const& found)
    {
        sheets = found.value_or(sheets);
        if (found && (!selected || !sheets.contains(*selected)))
            selected = sheets.empty() ? std::nullopt : std::optional(sheets.begin()->first);
    }

    QByteArray folder;
    Folder sheets;
    std::optional<QString> selected, message;
    bool saysLoad = false, isOutdated = false, isWatching = false;
    Job load, installation; // those whose outcomes count
    std::deque<Job> queued, waiting;
    Time now {};
    std::optional<Time> due, delivery; // of the next load, of an event
};

class LibraryStoreModelTest : public Test {
protected:
    void beginRound()
    {
        store.reset();
        services = std::make_unique<FakeLibraryServices>();
        store = std::make_unique<LibraryStore>(services->services(), LibraryStore::RestoreFolder::no);
        model = {};
        for (auto const* name : { "starters/a.md", "starters/b.md", "starters/c.md", "one/a.md", "two/a.md" })
            services->root.write(name, "# Starter");
    }

    void step()
    {
        advance(1us); // no two of what waits are due at once
        auto const folder = dice.anyOf(QByteArrayList { "one", "two" });
        auto const file = folder + '/' + dice.anyOf(QByteArrayList { "a", "b", "c" }) + ".md";
        switch (dice.below(16)) {
        case 0:
            if (dice.oneIn(8)) {
                store->shutdown();
                return model.shutdown();
            }
            store->connect(services->root.path(folder));
            return model.connect(folder);
        case 1:
            store->refresh();
            return model.reload(0ms);
        case 2:
            store->reload(LibraryStore::Debounced::yes);
            return model.reload(LibraryStore::reloadDebounce);
        case 3:
        case 4:
        case 5:
            dice.oneIn(4)       ? services->root.remove(file)
                : dice.oneIn(6) ? services->root.remove(folder)
                                : services->root.write(file, "# " + QByteArray::number(dice.below(5)));
            services->events.fire(services->root.path(folder));
            return model.fire(folder);
        case 6:
        case 7:
            return run();
        case 8:
        case 9:
            return finishOne();
        case 10:
            return workOff();
        case 11:
        case 12:
            store->installStarters(dice.anyOf(QList<QStringList> { { u"a"_s }, { u"c"_s, u"gone"_s, u"b"_s }, {} }));
            return model.install();
        default:
            return advance(dice.oneIn(3) ? Time(0) : Time(std::chrono::microseconds(dice.below(170'000))));
        }
    }

    void run()
    {
        if (!services->executor.runWork())
            return;
        auto const job = model.waiting.emplace_back(model.queued.front());
        model.queued.pop_front();
        auto const& root = services->root;
        if (model.folder.isEmpty() || !root.has(model.folder))
            return;
        job->emplace();
        for (auto const& name : root.names(model.folder))
            (**job)[QString::fromUtf8(name)] = QString::fromUtf8(root.read(model.folder + '/' + name).sliced(2));
    }

    // The workers have time for all that is due, and bring it in whatever order.
    void workOff()
    {
        advance(0ms);
        while (!model.queued.empty())
            run();
        while (!model.waiting.empty())
            finishOne();
    }

    void finishOne()
    {
        auto const index = dice.below(std::size_t { 3 });
        if (index >= model.waiting.size())
            return;
        auto const job = model.waiting[index];
        model.waiting.erase(model.waiting.begin() + static_cast<std::ptrdiff_t>(index));
        bool const isLoad = job == model.load, isInstallation = job == model.installation;
        ASSERT_EQ(services->executor.finishWork(index), isLoad || isInstallation);
        if (isLoad)
            model.finishLoad(*job);
        else if (isInstallation)
            model.finishInstallation(*job, store->message.value());
        ++outcomes[{ isLoad, isInstallation, job->has_value() }];
    }

    void advance(Time duration)
    {
        services->executor.advance(duration);
        model.advance(duration);
    }

    void compare() const
    {
        ASSERT_EQ(store->busy.value(), model.load || model.installation);
        ASSERT_EQ(store->message.value(), model.message);
        Folder shown;
        for (auto const& sheet : store->sheets.value())
            shown[sheet.id] = sheet.title;
        ASSERT_EQ(shown, model.sheets);
        ASSERT_EQ(store->selectedID.value(), model.selected);
        ASSERT_EQ(services->defaults.get<QString>(u"lastSheet"_s), model.selected);
        ASSERT_EQ(services->executor.queuedWork(), model.queued.size());
    }

    Dice dice { 20 };
    Model model;
    std::unique_ptr<FakeLibraryServices> services;
    std::unique_ptr<LibraryStore> store;
    std::map<std::array<bool, 3>, int> outcomes; // of loads, installations and what counts no more; failed and not
};

TEST_F(LibraryStoreModelTest, In_any_order_of_events_the_store_shows_what_the_rules_give)
{
    for (int round = 0; round < 500; ++round) {
        beginRound();
        for (int count = 0; count < 100; ++count) {
            SCOPED_TRACE(Message() << "round " << round << ", step " << count);
            step();
            compare();
            if (HasFatalFailure())
                return;
        }
        store->shutdown();
        model.shutdown();
        workOff();
        advance(1s);
        compare();
    }
    EXPECT_THAT(outcomes, AllOf(SizeIs(6), Each(Pair(_, Gt(100)))));
}

}
}
