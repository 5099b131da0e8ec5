#include "linux/freedesktop/DesktopSettingsPrograms.h"

#include "support/Test.h"

namespace Quillory {
namespace {

TEST(DesktopSettingsPrograms, Each_desktop_that_the_session_names_has_its_own_and_an_unknown_one_has_none)
{
    struct Case {
        QString desktops;
        QStringList programs;
    };
    for (auto const& [desktops, programs] : std::initializer_list<Case> {
             { u"XFCE"_s, { u"xfce4-keyboard-settings"_s } },
             { u"ubuntu:GNOME"_s, { u"gnome-control-center keyboard"_s } },
             { u"KDE"_s, { u"systemsettings kcm_keys"_s, u"systemsettings5 kcm_keys"_s } },
             { u"i3"_s, {} },
             { u""_s, {} },
         }) {
        QStringList commands;
        for (auto const& command : DesktopSettingsPrograms::keyboardShortcuts(desktops))
            commands << command.join(u' ');
        EXPECT_EQ(commands, programs);
    }
}

TEST(DesktopSettingsPrograms, Without_a_program_that_can_be_started_it_says_so)
{
    auto const path = qgetenv("PATH");
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    qputenv("PATH", "/nowhere");
    EXPECT_FALSE(DesktopSettingsPrograms().openKeyboardShortcuts());
    qputenv("PATH", path);
    qunsetenv("XDG_CURRENT_DESKTOP");
}

}
}
