// Another process that serves the session's interface of PackageKit and installs nothing:
//   quillory-test-package-installer Modify2|Modify ERROR|done
// It writes a line once it serves, and one for each call: its member, its arguments, and the size of each file.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QFileInfo>

#include <iostream>

namespace {

class StandIn final : public QDBusVirtualObject {
public:
    StandIn(QString served, QString outcome)
        : m_served(std::move(served))
        , m_outcome(std::move(outcome))
    {
    }
    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& call, QDBusConnection const& bus) override
    {
        if (!call.interface().endsWith(u'.' + m_served))
            return false;
        std::cout << call.interface().toStdString() << '.' << call.member().toStdString() << ' '
                  << call.signature().toStdString();
        for (auto const& argument : call.arguments()) {
            std::cout << " \"" << argument.toStringList().join(u' ').toStdString() << '"';
            for (auto const& file : argument.toStringList()) {
                if (QFileInfo(file).isFile())
                    std::cout << " (" << QFileInfo(file).size() << " bytes)";
            }
        }
        std::cout << std::endl;
        return bus.send(m_outcome == QStringLiteral("done")
                ? call.createReply()
                : call.createErrorReply(m_outcome, QStringLiteral("Told so.")));
    }

private:
    QString m_served;
    QString m_outcome;
};

}

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    StandIn standIn(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]));
    auto bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(QStringLiteral("/org/freedesktop/PackageKit"), &standIn)
        || !bus.registerService(QStringLiteral("org.freedesktop.PackageKit")))
        return EXIT_FAILURE;
    std::cout << "serving" << std::endl;
    return QCoreApplication::exec();
}
