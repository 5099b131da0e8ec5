#include "linux/freedesktop/PackageKitInstaller.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <limits>
#include <utility>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

// The call ends when the user has decided and the work is done.
constexpr int asLongAsItTakes = std::numeric_limits<int>::max();

// Nobody serves it, as far as the bus and its services say.
bool isUnserved(QDBusError const& error)
{
    auto const name = error.name();
    return error.type() == QDBusError::ServiceUnknown || error.type() == QDBusError::Disconnected
        || name == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || name.startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
}

bool isOtherInterface(QDBusError const& error)
{
    return error.type() == QDBusError::UnknownMethod || error.type() == QDBusError::UnknownInterface
        || error.type() == QDBusError::UnknownObject || error.type() == QDBusError::InvalidSignature;
}

}

PackageKitInstaller::PackageKitInstaller(QDBusConnection sessionBus, QString desktopEntry)
    : m_bus(std::move(sessionBus))
    , m_desktopEntry(std::move(desktopEntry))
{
}

Registration PackageKitInstaller::install(QString const& path, Done done)
{
    auto wish = std::make_shared<Wish>(path, std::move(done));
    ask(wish, Interface::present);
    return Registration([wish] { wish->done = nullptr; });
}

QVariantList PackageKitInstaller::arguments(QString const& path, Interface interface) const
{
    QStringList const files { path };
    QString const interaction; // as the user has set it
    if (interface == Interface::present)
        return { files, interaction, m_desktopEntry, QVariantMap() };
    return { 0U, files, interaction }; // for no window
}

void PackageKitInstaller::ask(std::shared_ptr<Wish> const& wish, Interface interface)
{
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.PackageKit"_s, u"/org/freedesktop/PackageKit"_s,
        interface == Interface::present ? u"org.freedesktop.PackageKit.Modify2"_s
                                        : u"org.freedesktop.PackageKit.Modify"_s,
        u"InstallPackageFiles"_s);
    message.setArguments(arguments(wish->path, interface));
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, asLongAsItTakes));
    // The answer may come after this object's end, and then finds its wish gone.
    auto answer = [this, watcher, interface, asked = std::weak_ptr(wish)] {
        watcher->deleteLater();
        if (auto const living = asked.lock(); living && living->done)
            answered(living, interface, watcher->error());
    };
    // Without a bus the call has failed already, which the watcher does not tell.
    if (watcher->isFinished())
        QMetaObject::invokeMethod(watcher, std::move(answer), Qt::QueuedConnection);
    else
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, std::move(answer));
}

void PackageKitInstaller::answered(std::shared_ptr<Wish> const& wish, Interface asked, QDBusError const& error)
{
    if (isOtherInterface(error) && asked == Interface::present)
        return ask(wish, Interface::previous);
    auto done = std::exchange(wish->done, nullptr);
    if (!error.isValid())
        return done({});
    auto const fault = isUnserved(error) || isOtherInterface(error) ? Fault::unavailable
        : error.name().endsWith(".Cancelled"_L1)                    ? Fault::cancelled
                                                                    : Fault::failed;
    done(std::unexpected(Failure { fault, error.message() }));
}

}
