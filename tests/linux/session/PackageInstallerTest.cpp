#include "PrivateBus.h"

#include "linux/freedesktop/PackageKitInstaller.h"
#include "support/EventLoop.h"

#include <QProcess>

namespace Quillory {
namespace {

TEST(PackageKitInstaller, Hands_the_file_over_and_tells_what_became_of_it)
{
    using enum PackageInstaller::Fault;
    QString const error = u"org.freedesktop.PackageKit.Modify."_s;
    struct Row {
        QString interface, outcome, call;
        std::expected<void, PackageInstaller::Failure> result;
    };
    auto const failure = [](PackageInstaller::Fault fault) {
        return std::unexpected(PackageInstaller::Failure { fault, u"Told so."_s });
    };
    auto const present = uR"(Modify2.InstallPackageFiles asssa{sv} "/a/b c.deb" "" "org.example.desktop" "")"_s;
    for (auto const& row : {
             Row { u"Modify2"_s, u"done"_s, present, {} },
             Row { u"Modify2"_s, error + u"Cancelled"_s, present, failure(cancelled) },
             Row { u"Modify2"_s, error + u"Failed"_s, present, failure(failed) },
             Row { u"Modify"_s, u"done"_s, uR"(Modify.InstallPackageFiles uass "" "/a/b c.deb" "")"_s, {} },
             Row { u"Other"_s, u"done"_s, {}, failure(unavailable) },
             Row { {}, {}, {}, failure(unavailable) },
         }) {
        SCOPED_TRACE(row.interface.toStdString());
        EventLoop loop;
        PrivateBus bus;
        QProcess other;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        other.setProcessEnvironment(environment);
        if (!row.interface.isEmpty()) {
            other.start(QStringLiteral(PACKAGE_INSTALLER), { row.interface, row.outcome });
            ASSERT_TRUE(loop.runUntil([&] { return other.canReadLine(); }));
            other.readLine();
        }
        PackageKitInstaller installer(bus.connect(), u"org.example.desktop"_s);
        std::optional<std::expected<void, PackageInstaller::Failure>> result;
        auto const task = installer.install(u"/a/b c.deb"_s, [&](auto const& told) { result = told; });
        installer.install(u"/other"_s, [](auto const&) { ADD_FAILURE() << "it was dropped"; }).end();
        ASSERT_TRUE(loop.runUntil([&] { return result.has_value(); }));
        EXPECT_EQ(result->has_value(), row.result.has_value());
        if (!row.result) {
            EXPECT_EQ(result->error().fault, row.result.error().fault);
            EXPECT_TRUE(row.call.isEmpty() || result->error().description == u"Told so.");
        }
        if (!row.call.isEmpty()) {
            EXPECT_TRUE(loop.runUntil([&] { return other.canReadLine(); }));
            EXPECT_EQ(QString::fromUtf8(other.readLine()).trimmed(), u"org.freedesktop.PackageKit."_s + row.call);
        }
        other.kill();
        other.waitForFinished();
    }
}

TEST(PackageKitInstaller, Without_a_bus_there_is_none)
{
    EventLoop loop;
    PackageKitInstaller installer(QDBusConnection(u"no such bus"_s), u"org.example.desktop"_s);
    std::optional<PackageInstaller::Fault> fault;
    auto const task = installer.install(u"/a.deb"_s, [&](auto const& told) { fault = told.error().fault; });
    EXPECT_FALSE(fault) << "never inside the call";
    EXPECT_TRUE(loop.runUntil([&] { return fault == PackageInstaller::Fault::unavailable; }));
}

}
}
