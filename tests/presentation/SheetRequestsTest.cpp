#include "presentation/SheetRequests.h"

#include "support/FakeLibraryServices.h"
#include "support/Test.h"

namespace Quillory {
namespace {

class SheetRequestsTest : public Test {
protected:
    void load(std::initializer_list<std::pair<QByteArray, QByteArray>> sheets)
    {
        for (auto const& [name, title] : sheets)
            services.root.write("library/" + name, "# " + title + '\n');
        connect();
        services.executor.settle();
    }
    void connect() { store.connect(services.root.path("library")); }

    // Answers stand in `told` after their request, with what is selected then.
    void show(QString const& name)
    {
        requests.show(name, [this, name](auto const& outcome) {
            told.append(name + u": "_s + (outcome ? store.selectedID.value().value_or(u"-"_s) : outcome.error()));
        });
    }
    QStringList takeTold() { return std::exchange(told, {}); }

    FakeLibraryServices services;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
    int opened = 0;
    SheetRequests requests { store, services.executor, [this] { ++opened; } };
    QStringList told;
};

TEST_F(SheetRequestsTest, A_sheet_goes_by_its_id_its_file_name_or_its_title_and_exactly_before_loosely)
{
    load({ { "git.md", "Versions" }, { "Git.md", "git.md" }, { "GIT.quillory.json", "" }, { "a.b.md", "Same" },
        { "c.md", "Same" }, { "d.md", "versions" }, { "zo\u00eb.md", "d" }, { "SSH.MD", "Keys" } });
    for (auto const& [name, selected] : std::initializer_list<std::pair<QString, QString>> {
             { u"git.md"_s, u"git.md"_s },
             { u"git"_s, u"git.md"_s },
             { u"Git"_s, u"Git.md"_s },
             { u"GIT"_s, u"GIT.quillory.json"_s },
             { u"giT.MD"_s, u"Several sheets are called “giT.MD”: Git.md, git.md."_s },
             { u"Versions"_s, u"git.md"_s },
             { u"versions"_s, u"d.md"_s },
             { u"VERSIONS"_s, u"Several sheets are called “VERSIONS”: d.md, git.md."_s },
             { u"a.b"_s, u"a.b.md"_s },
             { u"Same"_s, u"Several sheets are called “Same”: a.b.md, c.md."_s },
             { u"d"_s, u"d.md"_s },
             { u"ZOE\u0308"_s, u"zo\u00eb.md"_s },
             { u"ssh"_s, u"SSH.MD"_s },
             { u"gi"_s, u"There is no sheet “gi”."_s },
             { u""_s, u"There is no sheet “”."_s },
         }) {
        auto const before = opened;
        show(name);
        EXPECT_THAT(takeTold(), ElementsAre(name + u": "_s + selected));
        EXPECT_EQ(opened - before, selected.startsWith(u"There"_s) || selected.startsWith(u"Several"_s) ? 0 : 1);
    }
    EXPECT_EQ(store.message.value(), std::nullopt);
}

TEST_F(SheetRequestsTest, Before_the_first_load_has_ended_the_reader_opens_and_the_sheet_follows)
{
    services.root.write("library/a.md", "");
    services.root.write("library/b.md", "");
    show(u"b"_s);
    EXPECT_THAT(takeTold(), ElementsAre(u"b: There is no sheet “b”."_s)) << "no folder is connected";
    connect();
    show(u"b"_s);
    show(u"gone"_s);
    show(u"a"_s);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(opened, 3);
    services.executor.settle();
    EXPECT_THAT(takeTold(), ElementsAre(u"b: b.md"_s, u"gone: There is no sheet “gone”."_s, u"a: a.md"_s));
    EXPECT_EQ(opened, 3);
    EXPECT_EQ(store.message.value(), u"There is no sheet “gone”."_s);
}

TEST_F(SheetRequestsTest, A_new_sheet_is_waited_for_but_not_for_ever)
{
    load({ { "a.md", "A" } });
    services.root.write("library/new.md", "");
    store.reload();
    show(u"new"_s);
    EXPECT_THAT(told, IsEmpty());
    services.executor.settle();
    EXPECT_THAT(takeTold(), ElementsAre(u"new: new.md"_s));
    EXPECT_EQ(opened, 1);
    store.reload(); // from a drive that does not answer
    show(u"gone"_s);
    show(u"a"_s);
    services.executor.advance(SheetRequests::patience);
    EXPECT_THAT(takeTold(), ElementsAre(u"gone: The folder is still being read."_s, u"a: a.md"_s));
}

}
}
