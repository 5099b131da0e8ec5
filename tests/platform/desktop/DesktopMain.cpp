#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>

#include <gmock/gmock.h>

namespace {

// As on a desktop with a screen reader: the accessibility bus stands before the program starts.
void startAccessibilityBus(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    auto const name = QStringLiteral("start"); // the shared connection belongs to the application that follows
    QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
        .call(QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    QDBusConnection::disconnectFromBus(name);
}

}

int main(int argc, char** argv)
{
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    startAccessibilityBus(argc, argv);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
