#include "platform/linux/freedesktop/AtSpiAnnouncements.h"
#include "support/EventLoop.h"
#include "support/Test.h"

#include "SignalRecorder.h"

#include <QDBusConnection>
#include <QDBusReply>
#include <QLabel>

namespace Quillory {
namespace {

QString accessibilityBus()
{
    auto const call = QDBusMessage::createMethodCall(
        u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
    return QDBusReply<QString>(QDBusConnection::sessionBus().call(call)).value();
}

// A program of its own on the accessibility bus, as a screen reader is.
TEST(AtSpiAnnouncements, A_listener_on_the_accessibility_bus_hears_the_line_from_this_program)
{
    EventLoop loop;
    QLabel label(u"a line"_s); // the toolkit joins the bus with its first object that has something to say
    label.show();
    auto const ours = QStringLiteral("a11y");
    ASSERT_TRUE(loop.runUntil([&] { return QDBusConnection(ours).isConnected(); }));

    auto reader = QDBusConnection::connectToBus(accessibilityBus(), u"reader"_s);
    ASSERT_TRUE(reader.isConnected());
    SignalRecorder recorder;
    ASSERT_TRUE(reader.connect(QString(), QString(), u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s, &recorder,
        SLOT(record(QDBusMessage))));
    auto const& heard = recorder.heard;
    AtSpiAnnouncements().announce(u"Copied"_s, Announcements::Priority::medium);
    EXPECT_TRUE(loop.runUntil([&] { return !heard.isEmpty(); }));
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard[0].service(), QDBusConnection(ours).baseService());
    EXPECT_EQ(heard[0].signature(), u"siiv(so)"_s);
    EXPECT_EQ(heard[0].arguments().at(1), 1);
    EXPECT_EQ(heard[0].arguments().at(3).value<QDBusVariant>().variant(), u"Copied"_s);
}

}
}
