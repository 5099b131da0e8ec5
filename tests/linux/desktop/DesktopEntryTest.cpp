#include "linux/freedesktop/DesktopEntry.h"
#include "support/Test.h"

namespace Quillory {
namespace {

std::optional<DesktopEntry> parse(QByteArray const& lines)
{
    return DesktopEntry::parse(
        "# comment\n\n[Desktop Entry]\nType=Application\n" + lines, u"/a/e.desktop"_s, { u"de_DE"_s, u"de"_s });
}

TEST(DesktopEntry, A_command_line_becomes_the_arguments_that_it_means)
{
    using Case = std::pair<char const*, QStringList>; // no command for a malformed line
    auto const file = u"/s/a b.md"_s;
    auto const url = u"file:///s/a%20b.md"_s;
    for (auto const& [exec, command] : {
             Case { "vim %f", { u"vim"_s, file } },
             Case { "vim", { u"vim"_s, file } },
             Case { "vim %F -R", { u"vim"_s, file, u"-R"_s } },
             Case { "browser %u --x", { u"browser"_s, url, u"--x"_s } },
             Case { "browser --open=%U", { u"browser"_s, u"--open="_s + url } },
             Case { "e %i %c %k %f", { u"e"_s, u"--icon"_s, u"pen"_s, u"Der Editor"_s, u"/a/e.desktop"_s, file } },
             Case { "e 100%% %d%D%n%N%v%m %f", { u"e"_s, u"100%"_s, file } },
             Case { R"("/opt/my editor/e" --flag  %f)", { u"/opt/my editor/e"_s, u"--flag"_s, file } },
             Case { R"(sh -c "echo \\"\\$1\\" \\`x\\` \\\\ 'q'" e %f)",
                 { u"sh"_s, u"-c"_s, u"echo \"$1\" `x` \\ 'q'"_s, u"e"_s, file } },
             Case { R"(e "50%" "" %f)", { u"e"_s, u"50%"_s, QString(), file } },
             Case { "env A=1\\se %f", { u"env"_s, u"A=1"_s, u"e"_s, file } },
             Case { "e %", {} },
             Case { "e %z", {} },
             Case { "e \"open", {} },
         }) {
        auto const entry = parse("Name=The Editor\nName[de]=Der Editor\nIcon=pen\nExec=" + QByteArray(exec) + "\n");
        ASSERT_TRUE(entry) << exec;
        EXPECT_EQ(entry->commandFor(file).value_or(QStringList()), command) << exec;
    }
}

TEST(DesktopEntry, Only_the_first_group_of_an_application_counts)
{
    auto const entry = parse("Exec = e\r\nTerminal=true\nPath=/x\n[Desktop Action new]\nExec=other\nPath=/y\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->exec, u"e"_s);
    EXPECT_EQ(entry->folder, u"/x"_s);
    EXPECT_TRUE(entry->wantsTerminal);
    for (auto const* lines : { "", "Exec=\n", "Exec=e\nHidden=true\n", "Exec=e\nType=Link\n", "#Exec=e\n" })
        EXPECT_FALSE(parse(lines)) << lines;
    EXPECT_FALSE(DesktopEntry::parse("[Other]\nType=Application\nExec=e\n", {}, {}));
}

}
}
