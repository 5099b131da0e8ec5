#include "linux/freedesktop/PortalHotKeys.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace Quillory {

namespace {

QString const portalName = QStringLiteral("org.freedesktop.portal.Desktop");

// As portals word keys: "CTRL+ALT+k". Empty for a key that this keyboard lacks.
QString triggerText(ModifierFlags modifiers, std::optional<QString> const& symbolName)
{
    static constexpr std::array<std::pair<ModifierFlags, char const*>, 4> words { {
        { ModifierFlags::control, "CTRL+" },
        { ModifierFlags::option, "ALT+" },
        { ModifierFlags::shift, "SHIFT+" },
        { ModifierFlags::command, "LOGO+" },
    } };
    if (!symbolName)
        return {};
    QString text;
    for (auto const& [flag, word] : words) {
        if (contains(modifiers, flag))
            text += QLatin1StringView(word);
    }
    return text + *symbolName;
}

}

PortalHotKeys::PortalHotKeys(QDBusConnection bus, Operations operations, Repeats repeats)
    : m_bus(std::move(bus))
    , m_operations(std::move(operations))
    , m_portals(portalName, m_bus, QDBusServiceWatcher::WatchForOwnerChange)
    , m_repeats(repeats)
{
    connect(&m_portals, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](QString const&, QString const&, QString const& newOwner) { portalChanged(newOwner); });
    if (m_bus.isConnected())
        look();
    else
        QMetaObject::invokeMethod(this, [this] { setState(State::unavailable); }, Qt::QueuedConnection);
}

// Starts a portal that is not running yet, where there is one.
void PortalHotKeys::look()
{
    auto message = QDBusMessage::createMethodCall(portalName, QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << QStringLiteral("org.freedesktop.portal.GlobalShortcuts") << QStringLiteral("version");
    auto* const question = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    m_question = question;
    connect(question, &QDBusPendingCallWatcher::finished, this, [this, question] {
        question->deleteLater();
        m_question = nullptr;
        if (question->isError())
            return setState(State::unavailable);
        m_owner = question->reply().service();
        start();
    });
}

void PortalHotKeys::portalChanged(QString const& newOwner)
{
    forgetSession();
    m_owner.clear();
    releaseAll();
    delete m_question;
    if (newOwner.isEmpty())
        return setState(State::unavailable);
    if (m_state != State::unavailable)
        setState(State::asking);
    look();
}

void PortalHotKeys::bind(QList<Wish> wishes)
{
    if (wishes == m_wishes)
        return;
    m_wishes = std::move(wishes);
    if (!m_owner.isEmpty())
        startAfresh();
}

void PortalHotKeys::askAgain()
{
    if (m_state == State::refused)
        startAfresh();
}

// A session can be asked to bind once. The next one begins when this one has ended, since it has the same name.
void PortalHotKeys::startAfresh()
{
    releaseAll();
    m_afterSession = State::asking;
    setState(State::asking);
    if (m_session)
        m_session->close();
    else
        start();
}

void PortalHotKeys::start()
{
    if (m_wishes.isEmpty())
        return setState(State::bound);
    QList<PortalShortcutSession::Shortcut> shortcuts;
    for (auto const& wish : std::as_const(m_wishes))
        shortcuts.append(shortcutOf(wish));
    m_afterSession = State::asking;
    m_session = new PortalShortcutSession(m_bus, m_owner, shortcuts, this);
    using Session = PortalShortcutSession;
    connect(m_session, &Session::bound, this, [this] { setState(State::bound); });
    // A question also fails when the portal ends: it counts as refused once the portal has answered after that.
    connect(m_session, &Session::refused, this, [this] {
        m_afterSession = State::refused;
        m_session->close();
    });
    connect(m_session, &Session::triggersChanged, this, [this] { m_changes.tell(); });
    connect(m_session, &Session::activated, this, &PortalHotKeys::press);
    connect(m_session, &Session::deactivated, this, &PortalHotKeys::release);
    connect(m_session, &Session::taken, this, [this] {
        forgetSession();
        releaseAll();
        setState(State::refused);
    });
    connect(m_session, &Session::ended, this, [this] {
        forgetSession();
        if (m_afterSession == State::refused)
            setState(State::refused);
        else
            start();
    });
    setState(State::asking);
}

void PortalHotKeys::forgetSession()
{
    if (!m_session)
        return;
    m_session->disconnect(this);
    m_session->deleteLater();
    m_session = nullptr;
}

PortalShortcutSession::Shortcut PortalHotKeys::shortcutOf(Wish const& wish) const
{
    QVariantMap properties { { QStringLiteral("description"), wish.description } };
    auto const trigger = triggerText(wish.modifiers, m_operations.symbolName(wish.keyCode));
    if (!trigger.isEmpty())
        properties.insert(QStringLiteral("preferred_trigger"), trigger);
    return { wish.id, properties };
}

QString PortalHotKeys::trigger(QString const& id) const
{
    return m_session && m_state == State::bound ? m_session->trigger(id) : QString();
}

Registration PortalHotKeys::observeChanges(std::function<void()> changed)
{
    return m_changes.add(std::move(changed));
}

std::expected<Registration, HotKeys::Refusal> PortalHotKeys::registerHotKey(
    std::uint16_t keyCode, ModifierFlags modifiers, Handler handler)
{
    auto const hotKey = std::make_shared<HotKey>(HotKey { keyCode, modifiers, std::move(handler) });
    m_hotKeys.push_back(hotKey);
    return Registration([this, hotKey] {
        hotKey->isRegistered = false;
        std::erase(m_hotKeys, hotKey);
    });
}

// Also told again and again of one that is held, with releases or without.
void PortalHotKeys::press(QString const& id)
{
    auto const wish = std::ranges::find(m_wishes, id, &Wish::id);
    if (wish == m_wishes.end())
        return;
    auto const told = ++m_lastTold;
    if (auto const held = m_presses.find(id); held != m_presses.end()) {
        held->lastTold = told;
        return;
    }
    m_operations.noteUserTime();
    Listeners pressed;
    std::ranges::copy_if(m_hotKeys, std::back_inserter(pressed),
        [&](auto const& hotKey) { return hotKey->keyCode == wish->keyCode && hotKey->modifiers == wish->modifiers; });
    m_presses.insert(id, { pressed, std::chrono::steady_clock::now(), told });
    tell(pressed, Phase::pressed);
}

void PortalHotKeys::release(QString const& id)
{
    auto const held = m_presses.find(id);
    if (held == m_presses.end())
        return;
    if (std::chrono::steady_clock::now() - held->since < m_repeats.earliest)
        return letGo(id);
    auto const told = held->lastTold = ++m_lastTold;
    QTimer::singleShot(m_repeats.longestGap, Qt::PreciseTimer, this, [this, id, told] {
        if (m_presses.value(id).lastTold == told)
            letGo(id);
    });
}

// A hot key that was registered while its key was down has nothing to be told.
void PortalHotKeys::letGo(QString const& id)
{
    tell(m_presses.take(id).listeners, Phase::released);
}

void PortalHotKeys::releaseAll()
{
    for (auto const& press : std::exchange(m_presses, {}))
        tell(press.listeners, Phase::released);
}

void PortalHotKeys::tell(Listeners const& hotKeys, Phase phase)
{
    for (auto const& hotKey : hotKeys) {
        if (hotKey->isRegistered)
            hotKey->handler(phase);
    }
}

void PortalHotKeys::setState(State state)
{
    if (std::exchange(m_state, state) != state)
        m_changes.tell();
}

}
