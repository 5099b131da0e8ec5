#include "library/LibraryStore.h"

#include "support/Dice.h"
#include "support/FakeLibraryServices.h"
#include "support/Test.h"

#include <QDir>

#include <cerrno>
#include <deque>
#include <map>

namespace Quillory {
namespace {

using Time = std::chrono::nanoseconds;

QString const unreadable = u"Could not read the folder. Choose it again or refresh. "_s
    + SystemError(ENOENT).localizedDescription();

// What a store must show, worked out from the rules alone: of loads and of installations there is one task each at most,
// both of the latest generation, only their own outcomes count, and the last outcome has the word. A load that runs is
// let finish, and one more follows when it was asked for meanwhile. A load clears only what a load said.
struct Model {
    using Folder = std::map<QString, QString>; // id to title
    enum class Kind { load, installation };

    struct Job {
        Kind kind;
        int task;
        QString folder;
        QStringList starters {};
        std::optional<Folder> found {}; // absent for a folder that could not be listed
        QStringList lines {};
    };
    struct Timer {
        Time due {};
        int arrival = 0;
    };

    std::map<QString, std::optional<Folder>> disk;
    std::optional<QString> folder;
    int generation = 0;
    bool isWatching = false;
    std::optional<QString> message;
    bool isLoadsMessage = false;
    bool isLoading = false;
    bool isOutdated = false;
    bool isInstalling = false;
    Folder sheets;
    std::optional<QString> selected;

    Time now {};
    int arrivals = 0;
    int tasks = 0;
    std::map<Kind, int> current; // the tasks whose outcomes count
    std::optional<Timer> start; // of the load
    std::optional<Timer> delivery; // of an event
    std::deque<Job> queued;
    std::deque<Job> finished;
    std::map<QString, int> outcomes; // so that a test can tell that they came about

    Timer timer(Time delay) { return { now + delay, ++arrivals }; }
    bool isCurrent(Job const& job) const { return current.at(job.kind) == job.task; }

    void shutdown()
    {
        isWatching = false;
        delivery.reset();
        start.reset();
        current = { { Kind::load, 0 }, { Kind::installation, 0 } };
        isLoading = isOutdated = isInstalling = false;
    }

    void connect(QString const& path)
    {
        shutdown();
        isWatching = true;
        ++generation;
        folder = path;
        sheets.clear();
        message.reset();
        reload(0ms);
    }

    void reload(Time pause)
    {
        if (!folder)
            return;
        if (!start || now + pause < start->due)
            start = timer(pause);
    }

    void load()
    {
        start.reset(); // this one sees what that would have
        isOutdated = std::exchange(isLoading, true);
        if (isOutdated)
            return;
        current[Kind::load] = ++tasks;
        queued.push_back({ Kind::load, tasks, *folder });
    }

    void install(QStringList const& names)
    {
        if (!folder)
            return;
        current[Kind::installation] = ++tasks;
        isInstalling = true;
        queued.push_back({ Kind::installation, tasks, *folder, names });
    }

    void fire(QString const& path)
    {
        if (isWatching && path == folder && !delivery)
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
            isDelivery ? reload(LibraryStore::reloadDebounce) : load();
        }
        now = end;
    }

    void runWork()
    {
        if (queued.empty())
            return;
        finished.push_back(queued.front());
        queued.pop_front();
        auto& job = finished.back();
        auto& files = disk[job.folder];
        if (job.kind == Kind::installation && isCurrent(job)) {
            job.starters.sort();
            for (auto const& starter : job.starters)
                job.lines << installed(starter + u".md"_s, files);
            if (!files)
                job.lines << unreadable;
        }
        job.found = files;
    }

    static QString installed(QString const& id, std::optional<Folder>& files)
    {
        if (id == u"gone.md"_s)
            return u"Missing bundled starter: gone.md"_s;
        if (!files)
            return id + u": "_s + SystemError(ENOENT).localizedDescription();
        return (files->emplace(id, u"Starter"_s).second ? u"Installed "_s : u"Skipped existing "_s) + id;
    }

    void finishWork(std::size_t index)
    {
        if (index >= finished.size())
            return;
        auto const job = finished[index];
        finished.erase(finished.begin() + static_cast<std::ptrdiff_t>(index));
        bool const isLoad = job.kind == Kind::load;
        if (!isCurrent(job)) {
            ++outcomes[isLoad ? u"load dropped"_s : u"installation dropped"_s];
            return;
        }
        ++outcomes[(isLoad ? u"load"_s : u"installation"_s) + (job.found ? u""_s : u" failed"_s)];
        if (!isLoad || !job.found) {
            message = isLoad ? unreadable : job.lines.join(u'\n');
            isLoadsMessage = isLoad;
        } else if (isLoadsMessage) {
            message.reset();
        }
        (isLoad ? isLoading : isInstalling) = false;
        if (isLoad && std::exchange(isOutdated, false))
            load();
        if (!job.found)
            return;
        if (!isLoad && std::exchange(isLoading, false))
            load(); // what the running one has seen is older
        sheets = *job.found;
        if (!selected || !sheets.contains(*selected))
            selected = sheets.empty() ? std::nullopt : std::optional(sheets.begin()->first);
    }
};

class LibraryStoreModelTest : public Test {
protected:
    static constexpr int steps = 100;

    void beginRound()
    {
        store.reset();
        services = std::make_unique<FakeLibraryServices>();
        store = std::make_unique<LibraryStore>(services->services(), LibraryStore::RestoreFolder::no);
        for (auto const* starter : { "a.md", "b.md", "c.md" })
            services->root.write("starters/" + QByteArray(starter), "# Starter");
        model = {};
        model.shutdown();
        folders = { services->root.path("one"), services->root.path("two") };
        for (auto const& path : folders)
            putFolderBack(path);
    }

    void putFolderBack(QString const& path)
    {
        QDir().mkpath(path);
        if (!model.disk[path])
            model.disk[path].emplace();
    }

    void removeFolder(QString const& path)
    {
        QDir(path).removeRecursively();
        model.disk[path].reset();
    }

    void save(QString const& path)
    {
        putFolderBack(path);
        auto const id = QString(QChar(u'a' + dice.below(3U))) + u".md"_s;
        if (dice.oneIn(4)) {
            QFile::remove(path + u'/' + id);
            model.disk[path]->erase(id);
            return;
        }
        auto const title = QString::number(dice.below(5));
        services->root.write(
            QDir(services->root.path()).relativeFilePath(path + u'/' + id).toUtf8(), "# " + title.toUtf8());
        (*model.disk[path])[id] = title;
    }

    void step()
    {
        auto const path = dice.anyOf(folders);
        switch (dice.below(16)) {
        case 0:
            if (dice.oneIn(8)) {
                store->shutdown();
                return model.shutdown();
            }
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
            if (dice.oneIn(2))
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
        case 11:
        case 12:
            return install();
        default:
            return advance(dice.oneIn(3) ? Time(0) : Time(std::chrono::microseconds(dice.below(170'000))));
        }
    }

    void install()
    {
        QStringList names;
        for (auto const& name : { u"c"_s, u"a"_s, u"gone"_s, u"b"_s }) {
            if (dice.oneIn(2))
                names << name;
        }
        store->installStarters(names);
        model.install(names);
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
        auto const index = dice.below(std::size_t { 3 });
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
        ASSERT_EQ(store->busy.value(), model.isLoading || model.isInstalling);
        ASSERT_EQ(store->generation.value(), model.generation);
        ASSERT_EQ(store->message.value(), model.message);
        Model::Folder shown;
        for (auto const& sheet : store->sheets.value())
            shown[sheet.id] = sheet.title;
        ASSERT_EQ(shown, model.sheets);
        ASSERT_EQ(store->selectedID.value(), model.selected);
        ASSERT_EQ(services->defaults.get<QString>(u"lastSheet"_s), model.selected);
        ASSERT_EQ(services->executor.queuedWork(), model.queued.size());
    }

    QStringList folders;
    Dice dice { 20 };
    Model model;
    std::unique_ptr<FakeLibraryServices> services;
    std::unique_ptr<LibraryStore> store;
};

TEST_F(LibraryStoreModelTest, In_any_order_of_events_the_store_shows_what_the_rules_give)
{
    std::map<QString, int> outcomes;
    for (int round = 0; round < 500; ++round) {
        beginRound();
        for (int count = 0; count < steps; ++count) {
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
        for (auto const& [outcome, count] : model.outcomes)
            outcomes[outcome] += count;
    }
    for (auto const& outcome : { u"load"_s, u"load failed"_s, u"load dropped"_s, u"installation"_s,
             u"installation failed"_s, u"installation dropped"_s }) {
        EXPECT_GT(outcomes[outcome], 200) << qPrintable(outcome);
        RecordProperty(outcome.toStdString(), outcomes[outcome]);
    }
}

}
}
