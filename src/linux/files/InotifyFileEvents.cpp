#include "linux/files/InotifyFileEvents.h"

#include "linux/files/BoundedCall.h"
#include "linux/files/FileDescriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include <sys/inotify.h>

namespace Quillory {

namespace {

// Added to what the descriptor has, since one folder may be one watch's own and another's parent.
constexpr std::uint32_t folderEvents = IN_CREATE | IN_CLOSE_WRITE | IN_MODIFY | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE
    | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;

// A folder that somebody holds open tells nothing of its removal: its parent does.
constexpr std::uint32_t parentEvents = IN_CREATE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE | IN_DELETE_SELF
    | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;

// After one of these the folder's path names another folder, or none.
constexpr std::uint32_t endEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT;

struct Event {
    int descriptor = -1;
    std::uint32_t mask = 0;
    QByteArray name;
};

struct Watch {
    Watch(QString const& folder, std::chrono::nanoseconds theLatency, std::function<void()> theChanged)
        : path(QFile::encodeName(QDir::cleanPath(folder)))
        , parentPath(QFile::encodeName(QFileInfo(QDir::cleanPath(folder)).absolutePath()))
        , name(QFile::encodeName(QFileInfo(QDir::cleanPath(folder)).fileName()))
        , latency(theLatency)
        , changed(std::move(theChanged))
    {
    }

    QByteArray path;
    QByteArray parentPath;
    QByteArray name;
    std::chrono::nanoseconds latency;
    std::function<void()> changed;

    int folderWatch = -1; // inotify's numbers
    int parentWatch = -1;
    bool isDue = false;
    Registration delivery;
};

}

class InotifyFileEvents::Instance {
public:
    explicit Instance(Executor& executor)
        : m_executor(executor)
    {
    }

    // Nothing when no instance or no watch can be had.
    std::shared_ptr<Watch> add(QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed)
    {
        if (!isOpen())
            return nullptr;
        auto watch = std::make_shared<Watch>(folder, latency, std::move(changed));
        followPaths({ watch });
        if (watch->folderWatch < 0) {
            letGo(watch->parentWatch);
            return nullptr;
        }
        m_watches.push_back(watch);
        return watch;
    }

    void remove(std::shared_ptr<Watch> const& watch)
    {
        std::erase(m_watches, watch);
        watch->delivery.end();
        letGo(watch->folderWatch);
        letGo(watch->parentWatch);
    }

    // Tells of the watches whose folder is another one, has gone or is back.
    void lookAgain()
    {
        if (m_inotify->isOpen())
            followPaths(m_watches);
    }

private:
    struct Numbers {
        int parent = -1;
        int folder = -1;
    };

    // Made with the first watch, and tried again with each: there are few instances for a user.
    bool isOpen()
    {
        if (m_inotify->isOpen())
            return true;
        *m_inotify = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
        if (!m_inotify->isOpen())
            return false;
        m_notifier = std::make_unique<QSocketNotifier>(m_inotify->number(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { handleEvents(); });
        return true;
    }

    void letGo(int descriptor)
    {
        bool const isUsed = std::ranges::any_of(m_watches,
            [&](auto const& watch) { return watch->folderWatch == descriptor || watch->parentWatch == descriptor; });
        // Fails with EINVAL for a folder that is gone and took its watch along.
        if (descriptor >= 0 && !isUsed)
            inotify_rm_watch(m_inotify->number(), descriptor);
    }

    void handleEvents()
    {
        alignas(inotify_event) std::array<char, 16384> buffer;
        while (true) {
            auto const length = read(m_inotify->number(), buffer.data(), buffer.size());
            if (length < 0 && errno == EINTR)
                continue;
            if (length <= 0)
                return;
            for (auto const* at = buffer.data(); at < buffer.data() + length;) {
                inotify_event event;
                std::memcpy(&event, at, sizeof event);
                handle({ event.wd, event.mask, event.len > 0 ? QByteArray(at + sizeof event) : QByteArray() });
                at += sizeof event + event.len;
            }
        }
    }

    void handle(Event const& event)
    {
        // After an overflow anything may have happened, to the folders themselves too.
        bool const isOverflow = (event.mask & IN_Q_OVERFLOW) != 0;
        std::vector<std::shared_ptr<Watch>> moved;
        for (auto const& watch : m_watches) {
            bool const isMoved = isOverflow || tellsOfPath(event, *watch);
            if (isMoved)
                addWithThoseBelow(watch, moved);
            if (isMoved || watch->folderWatch == event.descriptor)
                notice(watch);
        }
        followPaths(moved);
    }

    // Nothing else tells of those below: a folder that goes takes the watch of its parent's names along.
    void addWithThoseBelow(std::shared_ptr<Watch> const& watch, std::vector<std::shared_ptr<Watch>>& all) const
    {
        all.push_back(watch);
        for (auto const& other : m_watches) {
            if (other->path.startsWith(watch->path + '/'))
                all.push_back(other);
        }
    }

    // Whether the path may lead elsewhere, or nowhere, from now on.
    static bool tellsOfPath(Event const& event, Watch const& watch)
    {
        bool const isEnd = (event.mask & endEvents) != 0;
        if (watch.parentWatch == event.descriptor)
            return isEnd || event.name == watch.name;
        return watch.folderWatch == event.descriptor && isEnd;
    }

    // The folders that stand at the paths now may be others, and so may their parents. Tells of those that have changed:
    // what came of the old ones before is not understood any more.
    void followPaths(std::vector<std::shared_ptr<Watch>> const& watches)
    {
        auto const numbers = watches.empty() ? std::nullopt : askForNumbers(watches);
        if (!numbers)
            return;
        std::vector<int> old;
        for (std::size_t index = 0; index < watches.size(); ++index) {
            auto& watch = *watches[index];
            auto const [parent, folder] = (*numbers)[index];
            old.push_back(std::exchange(watch.parentWatch, parent));
            old.push_back(std::exchange(watch.folderWatch, folder));
            bool const isKnown = std::ranges::find(m_watches, watches[index]) != m_watches.end();
            if (folder != old.back() && isKnown)
                notice(watches[index]);
        }
        std::ranges::for_each(old, [this](int number) { letGo(number); });
    }

    // Absent while a drive does not answer; then all stays as it is, and no other question is put to it.
    std::optional<std::vector<Numbers>> askForNumbers(std::vector<std::shared_ptr<Watch>> const& watches)
    {
        if (!m_question.expired())
            return std::nullopt;
        std::vector<std::pair<QByteArray, QByteArray>> paths;
        paths.reserve(watches.size());
        for (auto const& watch : watches)
            paths.emplace_back(watch->parentPath, watch->path);
        auto question = std::make_shared<char>();
        m_question = question;
        auto ask = [paths = std::move(paths), inotify = m_inotify, question = std::move(question)] {
            std::vector<Numbers> numbers;
            for (auto const& [parent, folder] : paths) {
                // The parent first, so that it tells of a folder that comes meanwhile.
                auto const ofParent = inotify_add_watch(inotify->number(), parent.constData(), parentEvents);
                numbers.push_back({ ofParent, inotify_add_watch(inotify->number(), folder.constData(), folderEvents) });
            }
            return numbers;
        };
        auto numbers = resultWithin(driveAnswerTime, std::move(ask));
        if (numbers)
            m_question.reset();
        return numbers;
    }

    // One call per latency; what comes while it is awaited is told by it.
    void notice(std::shared_ptr<Watch> const& watch)
    {
        if (std::exchange(watch->isDue, true))
            return;
        watch->delivery = m_executor.after(watch->latency, [owner = std::weak_ptr(watch)] {
            // Held while it runs: the callback may end the registration.
            auto const living = owner.lock();
            living->isDue = false;
            living->changed();
        });
    }

    Executor& m_executor;
    std::shared_ptr<FileDescriptor> m_inotify = std::make_shared<FileDescriptor>(); // shared with late answers
    std::weak_ptr<char> m_question; // lives until it is answered
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::vector<std::shared_ptr<Watch>> m_watches;
};

InotifyFileEvents::InotifyFileEvents(Executor& executor)
    : m_instance(std::make_unique<Instance>(executor))
{
}

InotifyFileEvents::~InotifyFileEvents() = default;

Registration InotifyFileEvents::watch(
    QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed)
{
    auto watch = m_instance->add(folder, latency, std::move(changed));
    if (!watch)
        return {};
    return Registration(m_lifetime.guarded([this, watch = std::move(watch)] { m_instance->remove(watch); }));
}

void InotifyFileEvents::lookAgain()
{
    m_instance->lookAgain();
}

}
