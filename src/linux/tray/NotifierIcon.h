#pragma once

#include "linux/tray/NotifierMenu.h"
#include "linux/tray/TrayIcon.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace Quillory {

// An item of org.kde.StatusNotifierItem with its menu. It has a connection to the session bus of its own, since nothing
// takes an item away from a tray but the end of its connection. GUI thread only.
class NotifierIcon final : public QDBusVirtualObject, public TrayIcon {
public:
    // Called from the event loop, never from within a call of a tray; each of them may end the icon.
    struct Operations {
        // The server time of the click, where the tray passed one on.
        std::function<void(std::optional<std::uint32_t> userTime)> clicked;
        std::function<void()> menuWanted; // by a tray that does not draw it
        std::function<StatusMenu()> menu;
        std::function<void(int number)> chosen;
    };

    static QString watcher() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }

    // Null when the bus takes no more connections.
    static std::unique_ptr<NotifierIcon> connected(Operations operations);
    ~NotifierIcon() override;
    NotifierIcon(NotifierIcon const&) = delete;
    NotifierIcon& operator=(NotifierIcon const&) = delete;

    // Tells the first time alone as long as nobody registers it.
    void show(StatusItemLook const& look, StatusFace::Style const& style) override;

    // Asks the watcher, which has come, to show the icon. It has a look by then.
    void registerItem();

    QString introspect(QString const& path) const override;
    bool handleMessage(QDBusMessage const& call, QDBusConnection const& connection) override;

private:
    NotifierIcon(QDBusConnection connection, Operations operations);

    struct Property {
        QLatin1StringView name;
        QVariant (*value)(NotifierIcon const& icon); // made when it is asked for: pictures of all sizes are 100 KB
    };

    static std::span<Property const> itemProperties();
    QVariant property(QString const& interface, QString const& name) const;
    QVariantMap allProperties(QString const& interface) const;
    std::optional<QVariantList> answer(QDBusMessage const& call);
    std::optional<QVariantList> answerAsItem(QDBusMessage const& call);
    std::optional<QVariantList> answerWithProperties(QDBusMessage const& call) const;
    QVariant pictures() const;
    QString status() const;
    bool isWaiting() const { return m_look.attention == StatusItemLook::Attention::waiting; }
    void tell(QString const& signal, QVariantList const& arguments = {}) const;
    void later(std::function<void()> action);

    QDBusConnection m_connection;
    Operations m_operations;
    NotifierMenu m_menu;
    StatusItemLook m_look;
    StatusFace::Style m_style {};
    std::optional<std::uint32_t> m_userTime; // of a click that comes next
};

}
