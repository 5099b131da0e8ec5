#include "linux/freedesktop/AtSpiAnnouncements.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace Quillory {

namespace {

// How urgent a live line is, in the words of the bus.
enum class LiveRegion { polite = 1, assertive = 2 };

LiveRegion liveRegion(Announcements::Priority priority)
{
    return priority == Announcements::Priority::high ? LiveRegion::assertive : LiveRegion::polite;
}

QDBusArgument applicationReference(QDBusConnection const& bus)
{
    QDBusArgument reference;
    reference.beginStructure();
    reference << bus.baseService() << QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root"));
    reference.endStructure();
    return reference;
}

}

void AtSpiAnnouncements::announce(QString const& text, Priority priority)
{
    // The toolkit's own connection: a reader takes a line only from a program that it knows. It exists as soon as
    // assistive technology is switched on.
    QDBusConnection const bus(QStringLiteral("a11y"));
    if (!bus.isConnected())
        return;
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/a11y/atspi/accessible/root"),
        QStringLiteral("org.a11y.atspi.Event.Object"), QStringLiteral("Announcement"));
    signal << QString() << static_cast<int>(liveRegion(priority)) << 0 << QVariant::fromValue(QDBusVariant(text))
           << QVariant::fromValue(applicationReference(bus));
    bus.send(signal);
}

}
