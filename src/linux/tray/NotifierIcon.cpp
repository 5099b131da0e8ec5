#include "linux/tray/NotifierIcon.h"

#include "linux/freedesktop/ApplicationInterface.h"
#include "linux/tray/NotifierIntrospection.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <algorithm>
#include <array>
#include <utility>

namespace Quillory {

namespace {

QString const itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
QString const propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
QString const itemPath = QStringLiteral("/StatusNotifierItem");
QString const menuPath = QStringLiteral("/StatusNotifierItem/Menu");

QString newConnectionName()
{
    static int count = 0;
    return QStringLiteral("quillory-tray-%1").arg(++count);
}

}

std::unique_ptr<NotifierIcon> NotifierIcon::connected(Operations operations)
{
    [[maybe_unused]] static bool const areKnown = (NotifierValues::registerAll(), true);
    auto const name = newConnectionName();
    auto connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return nullptr;
    }
    return std::unique_ptr<NotifierIcon>(new NotifierIcon(std::move(connection), std::move(operations)));
}

NotifierIcon::NotifierIcon(QDBusConnection connection, Operations operations)
    : m_connection(std::move(connection))
    , m_operations(std::move(operations))
    , m_menu({
          .menu = [this] { return m_operations.menu(); },
          .chosen = [this](int number) { later([this, number] { std::function(m_operations.chosen)(number); }); },
          .layoutUpdated =
              [this](uint revision) {
                  auto signal = QDBusMessage::createSignal(
                      menuPath, NotifierMenu::interface(), QStringLiteral("LayoutUpdated"));
                  m_connection.send(signal << revision << 0);
              },
      })
{
    m_connection.registerVirtualObject(itemPath, this, QDBusConnection::SubPath);
}

NotifierIcon::~NotifierIcon()
{
    QDBusConnection::disconnectFromBus(m_connection.name());
}

void NotifierIcon::show(StatusItemLook const& look, StatusFace::Style const& style)
{
    auto const old = std::exchange(m_look, look);
    bool const isRestyled = std::exchange(m_style, style) != style;
    if (old.autosaveName.isEmpty())
        return;
    if (old.title != look.title)
        tell(QStringLiteral("NewTitle"));
    if (old.toolTip != look.toolTip)
        tell(QStringLiteral("NewToolTip"));
    bool const isSameState = old.attention == look.attention;
    if (isRestyled || !isSameState || old.characters != look.characters) {
        tell(QStringLiteral("NewIcon"));
        tell(QStringLiteral("NewAttentionIcon"));
    }
    if (!isSameState)
        tell(QStringLiteral("NewStatus"), { status() });
}

void NotifierIcon::registerItem()
{
    auto call = QDBusMessage::createMethodCall(
        watcher(), QStringLiteral("/StatusNotifierWatcher"), watcher(), QStringLiteral("RegisterStatusNotifierItem"));
    call.setAutoStartService(false);
    m_connection.send(call << m_connection.baseService());
}

QString NotifierIcon::introspect(QString const& path) const
{
    return path == menuPath ? NotifierIntrospection::menu() : NotifierIntrospection::item();
}

bool NotifierIcon::handleMessage(QDBusMessage const& call, QDBusConnection const& connection)
{
    auto const arguments = answer(call);
    if (!arguments)
        return false;
    if (call.isReplyRequired())
        connection.send(call.createReply(*arguments));
    return true;
}

std::optional<QVariantList> NotifierIcon::answer(QDBusMessage const& call)
{
    if (call.interface() == propertiesInterface)
        return answerWithProperties(call);
    return call.path() == menuPath ? m_menu.answer(call) : answerAsItem(call);
}

// The middle button and the wheel do nothing.
std::optional<QVariantList> NotifierIcon::answerAsItem(QDBusMessage const& call)
{
    auto const name = call.member();
    if (name == QLatin1StringView("ProvideXdgActivationToken"))
        m_userTime = ApplicationInterface::userTime(call.arguments().value(0).toString());
    else if (name == QLatin1StringView("Activate"))
        later([this, time = std::exchange(m_userTime, {})] { std::function(m_operations.clicked)(time); });
    else if (name == QLatin1StringView("ContextMenu"))
        later([this] { std::function(m_operations.menuWanted)(); });
    else if (name != QLatin1StringView("SecondaryActivate") && name != QLatin1StringView("Scroll"))
        return std::nullopt;
    return QVariantList();
}

std::optional<QVariantList> NotifierIcon::answerWithProperties(QDBusMessage const& call) const
{
    auto const interface = call.arguments().value(0).toString();
    if (call.member() == QLatin1StringView("GetAll"))
        return QVariantList { allProperties(interface) };
    auto const value = call.member() == QLatin1StringView("Get")
        ? property(interface, call.arguments().value(1).toString())
        : QVariant();
    if (!value.isValid())
        return std::nullopt;
    return QVariantList { QVariant::fromValue(QDBusVariant(value)) };
}

QVariant NotifierIcon::property(QString const& interface, QString const& name) const
{
    if (interface != itemInterface)
        return allProperties(interface).value(name);
    auto const& all = itemProperties();
    auto const asked = std::ranges::find(all, name, &Property::name);
    return asked == all.end() ? QVariant() : asked->value(*this);
}

QVariantMap NotifierIcon::allProperties(QString const& interface) const
{
    if (interface == NotifierMenu::interface())
        return m_menu.properties();
    QVariantMap all;
    if (interface == itemInterface) {
        for (auto const& property : itemProperties())
            all.insert(property.name, property.value(*this));
    }
    return all;
}

// No icon names: trays prefer a name to the pictures, don't recolour it either, and a name has no dot and no letters.
std::span<NotifierIcon::Property const> NotifierIcon::itemProperties()
{
    using Icon = NotifierIcon;
    using Pictures = QList<NotifierValues::Picture>;
    static constexpr auto none = [](Icon const&) -> QVariant { return QString(); };
    static constexpr auto noPictures = [](Icon const&) { return QVariant::fromValue(Pictures()); };
    static constexpr std::array<Property, 18> all { {
        { QLatin1StringView("Category"), [](Icon const&) -> QVariant { return QStringLiteral("ApplicationStatus"); } },
        { QLatin1StringView("Id"), [](Icon const& icon) -> QVariant { return icon.m_look.autosaveName; } },
        { QLatin1StringView("Title"), [](Icon const& icon) -> QVariant { return icon.m_look.title; } },
        { QLatin1StringView("Status"), [](Icon const& icon) -> QVariant { return icon.status(); } },
        { QLatin1StringView("WindowId"), [](Icon const&) -> QVariant { return 0; } },
        { QLatin1StringView("IconThemePath"), none },
        { QLatin1StringView("IconName"), none },
        { QLatin1StringView("IconPixmap"), [](Icon const& icon) { return icon.pictures(); } },
        { QLatin1StringView("IconAccessibleDesc"),
            [](Icon const& icon) -> QVariant { return icon.m_look.accessibilityLabel; } },
        { QLatin1StringView("OverlayIconName"), none },
        { QLatin1StringView("OverlayIconPixmap"), noPictures },
        { QLatin1StringView("AttentionIconName"), none },
        { QLatin1StringView("AttentionIconPixmap"),
            [](Icon const& icon) { return icon.isWaiting() ? icon.pictures() : noPictures(icon); } },
        { QLatin1StringView("AttentionAccessibleDesc"),
            [](Icon const& icon) -> QVariant { return icon.m_look.toolTip; } },
        { QLatin1StringView("AttentionMovieName"), none },
        { QLatin1StringView("ToolTip"),
            [](Icon const& icon) {
                return QVariant::fromValue(NotifierValues::ToolTip { {}, {}, icon.m_look.toolTip, {} });
            } },
        { QLatin1StringView("ItemIsMenu"), [](Icon const&) -> QVariant { return false; } },
        { QLatin1StringView("Menu"), [](Icon const&) { return QVariant::fromValue(QDBusObjectPath(menuPath)); } },
    } };
    return all;
}

QVariant NotifierIcon::pictures() const
{
    QList<NotifierValues::Picture> pictures;
    for (int const side : StatusFace::sides)
        pictures.append(NotifierValues::Picture::of(StatusFace::drawn(m_look, m_style, side)));
    return QVariant::fromValue(pictures);
}

QString NotifierIcon::status() const
{
    return isWaiting() ? QStringLiteral("NeedsAttention") : QStringLiteral("Active");
}

void NotifierIcon::tell(QString const& signal, QVariantList const& arguments) const
{
    auto message = QDBusMessage::createSignal(itemPath, itemInterface, signal);
    message.setArguments(arguments);
    m_connection.send(message);
}

// The call has its answer by then, and nothing on the stack needs the icon any more.
void NotifierIcon::later(std::function<void()> action)
{
    QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
}

}
