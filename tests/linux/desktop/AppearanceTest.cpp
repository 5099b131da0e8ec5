#include "linux/freedesktop/PortalColorScheme.h"
#include "linux/qt/QtAppearance.h"
#include "support/BusService.h"
#include "support/EventLoop.h"
#include "support/Test.h"

#include <QApplication>
#include <QDBusVariant>
#include <QPalette>

namespace Quillory {
namespace {

TEST(AppearanceTest, The_settings_portal_is_followed_whenever_it_comes_and_the_desktops_accent_stays)
{
    EventLoop loop;
    auto const text = [] { return QApplication::palette().color(QPalette::Text); };
    auto const desktops = QApplication::palette();
    int answers = 0;
    PortalColorScheme const scheme(QDBusConnection::sessionBus(), [&](PreferredAppearance preferred) {
        ++answers;
        wear(preferred);
    });
    auto const bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"service"_s);
    QVariant const light = 2U;
    BusService const portal(bus, u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        [&](QDBusMessage const& call, QDBusConnection&) {
            EXPECT_EQ(call.arguments(), (QVariantList { u"org.freedesktop.appearance"_s, u"color-scheme"_s }));
            QVariant const value = QVariant::fromValue(QDBusVariant(light));
            return std::optional(QVariantList { QVariant::fromValue(QDBusVariant(value)) });
        });
    ASSERT_TRUE(loop.runUntil([&] { return answers == 1; })) << "it came after the program";
    EXPECT_EQ(QApplication::palette(), desktops);
    for (auto const& [wish, isDark] : { std::pair(1U, true), { 2U, false }, { 1U, true }, { 0U, false } }) {
        auto signal = QDBusMessage::createSignal(
            u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << u"color-scheme"_s
               << QVariant::fromValue(QDBusVariant(QVariant(wish)));
        EXPECT_TRUE(bus.send(signal));
        EXPECT_TRUE(loop.runUntil([&] { return (text().lightness() > 128) == isDark; })) << wish;
        EXPECT_EQ(QApplication::palette().highlight(), desktops.highlight());
    }
    EXPECT_EQ(QApplication::palette(), desktops);
}

}
}
