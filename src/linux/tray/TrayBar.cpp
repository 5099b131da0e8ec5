#include "linux/tray/TrayBar.h"

#include "linux/tray/EmbeddedIcon.h"
#include "linux/tray/NotifierIcon.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <utility>

#include <sys/resource.h>

namespace Quillory {

namespace {

// A watcher that has just come belongs to a panel that still sets itself up, and loses for good what is registered in the
// very moment in which it begins to listen (seen with waybar at one start of five).
constexpr std::chrono::milliseconds settling { 500 };

// Each connection takes about a millisecond: the event loop goes on in between.
constexpr std::chrono::milliseconds slice { 4 };

// The share of the process's open files that icons may take.
constexpr rlim_t filesForIcons = 4;

std::size_t bounded(std::size_t icons)
{
    rlimit files {};
    if (getrlimit(RLIMIT_NOFILE, &files) == 0 && files.rlim_cur / filesForIcons < icons)
        return static_cast<std::size_t>(files.rlim_cur / filesForIcons);
    return icons;
}

}

class TrayBar::Item final : public StatusItem {
public:
    Item(TrayBar& bar, Target itsTarget)
        : target(std::move(itsTarget))
        , m_bar(bar)
    {
        m_bar.m_items.push_back(this);
    }
    ~Item() override { m_bar.forget(*this); }
    Item(Item const&) = delete;
    Item& operator=(Item const&) = delete;

    // A tray knows an icon by its first name.
    void show(StatusItemLook const& newLook) override
    {
        auto const old = std::exchange(look, newLook);
        if (old == look)
            return;
        if (old.autosaveName != look.autosaveName)
            icon.reset();
        if (icon)
            icon->show(look, m_bar.m_style);
        else
            m_bar.fillLater();
    }

    Target target;
    StatusItemLook look;
    std::unique_ptr<TrayIcon> icon;

private:
    TrayBar& m_bar;
};

TrayBar::TrayBar(QDBusConnection const& sessionBus, Operations operations)
    : m_operations(std::move(operations))
    , m_bus(sessionBus)
    , m_watchers(NotifierIcon::watcher(), m_bus, QDBusServiceWatcher::WatchForOwnerChange)
    , m_style(StatusFace::Style::ofDesktop())
    , m_mostIcons(bounded(mostIcons))
{
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &TrayBar::fill);
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, &TrayBar::fill);
    connect(&m_watchers, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](QString const&, QString const&, QString const& owner) { watcherChanged(owner); });
    m_hasWatcher = m_bus.isConnected() && m_bus.interface()->isServiceRegistered(NotifierIcon::watcher());
    m_tray = trayOfDesktop();
    settle();
    QCoreApplication::instance()->installEventFilter(this);
}

TrayBar::~TrayBar() = default;

std::unique_ptr<StatusItem> TrayBar::statusItem(StatusItem::Target target)
{
    return std::make_unique<Item>(*this, std::move(target));
}

TrayBar::Tray TrayBar::trayOfDesktop() const
{
    if (m_hasWatcher)
        return Tray::notifier;
    return m_operations.hasEmbeddingTray() ? Tray::embedding : Tray::none;
}

// Each new watcher has to be told of all icons, whatever the last one knew.
void TrayBar::watcherChanged(QString const& owner)
{
    m_hasWatcher = !owner.isEmpty();
    enter(trayOfDesktop());
}

void TrayBar::trayChanged()
{
    if (auto const tray = trayOfDesktop(); tray != m_tray)
        enter(tray);
}

// Embedded icons go before the others come, and the other way round.
void TrayBar::enter(Tray tray)
{
    for (auto* const item : m_items)
        item->icon.reset();
    m_tray = tray;
    m_turn.stop();
    settle();
    fillLater();
}

void TrayBar::settle()
{
    m_settling.stop();
    if (m_tray == Tray::notifier)
        m_settling.start(settling);
}

void TrayBar::fillLater()
{
    if (m_tray != Tray::none && !m_settling.isActive())
        m_turn.start(0);
}

void TrayBar::fill()
{
    QElapsedTimer time;
    time.start();
    auto icons = static_cast<std::size_t>(
        std::ranges::count_if(m_items, [](auto const* item) { return !!item->icon; }));
    for (auto* const item : m_items) {
        if (item->icon || item->look.autosaveName.isEmpty())
            continue;
        if (time.hasExpired(slice.count()))
            return fillLater();
        if (icons == m_mostIcons || !give(*item)) {
            if (!std::exchange(m_isFull, true))
                m_operations.log(
                    tr("The tray takes %1 items at most. Other pinned sheets don't show there.").arg(icons));
            return;
        }
        ++icons;
    }
    m_isFull = false;
}

bool TrayBar::give(Item& item)
{
    item.icon = makeIcon(item);
    if (!item.icon)
        return false;
    item.icon->show(item.look, m_style);
    if (auto* const icon = dynamic_cast<NotifierIcon*>(item.icon.get()))
        icon->registerItem();
    return true;
}

std::unique_ptr<TrayIcon> TrayBar::makeIcon(Item& item)
{
    auto const clicked = [this, &item](std::optional<std::uint32_t> userTime) {
        m_operations.noteUserTime(userTime);
        std::function(item.target.clicked)();
    };
    auto const menuWanted = [this, &item] { popUpMenu(item); };
    auto const menu = [&item] { return item.target.menu(); };
    auto const chosen = [this, &item](int number) {
        m_operations.noteUserTime(std::nullopt);
        std::function(item.target.chosen)(number);
    };
    if (m_tray == Tray::notifier)
        return NotifierIcon::connected({ clicked, menuWanted, menu, chosen });
    return std::make_unique<EmbeddedIcon>(
        EmbeddedIcon::Operations { [clicked] { clicked(std::nullopt); }, menuWanted });
}

// The item may go while its menu is up.
void TrayBar::popUpMenu(Item const& item)
{
    m_operations.noteUserTime(std::nullopt);
    m_menu.popUp(item.target.menu(), QCursor::pos(), [this, chosen = item.target.chosen](int number) {
        m_operations.noteUserTime(std::nullopt);
        chosen(number);
    });
}

void TrayBar::forget(Item& item)
{
    std::erase(m_items, &item);
    fillLater();
}

bool TrayBar::eventFilter(QObject* watched, QEvent* event)
{
    bool const isStyle = event->type() == QEvent::ApplicationPaletteChange
        || event->type() == QEvent::ApplicationFontChange;
    if (!isStyle || watched != QCoreApplication::instance())
        return false;
    if (auto style = StatusFace::Style::ofDesktop(); std::exchange(m_style, style) != style) {
        for (auto const* const item : m_items) {
            if (item->icon)
                item->icon->show(item->look, m_style);
        }
    }
    return false;
}

}
