#include "linux/tray/NotifierMenu.h"

#include "support/Test.h"

namespace Quillory {
namespace {

using namespace NotifierValues;

// A menu as a tray asks for it, without the bus in between.
class NotifierMenuTest : public Test {
protected:
    QVariantList call(QString const& method, QVariantList const& arguments)
    {
        auto message = QDBusMessage::createMethodCall(u"a.b"_s, u"/"_s, NotifierMenu::interface(), method);
        message.setArguments(arguments);
        return menu.answer(message).value();
    }
    QStringList labels()
    {
        QStringList labels;
        for (auto const& row : call(u"GetLayout"_s, { 0, -1, QStringList() })[1].value<Layout>().rows)
            labels.append(row.value<Layout>().row.properties.value(u"label"_s).toString());
        return labels;
    }
    uint revision() { return call(u"GetLayout"_s, { 0, 0, QStringList() })[0].toUInt(); }
    void click(int number) { call(u"Event"_s, { number, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U }); }

    StatusMenu rows { { 1, u"Open"_s, true, {} }, { 2, {}, true, {} }, { 3, u"Check"_s, false, {} },
        { 5, u"Quit_it"_s, true, u"q"_s } };
    std::vector<int> chosen;
    std::vector<uint> told;
    NotifierMenu menu { { [this] { return rows; }, [this](int number) { chosen.push_back(number); },
        [this](uint newRevision) { told.push_back(newRevision); } } };
};

TEST_F(NotifierMenuTest, A_layout_is_as_the_program_has_it_now_and_its_revision_rises_with_each_change)
{
    EXPECT_THAT(labels(), ElementsAre(u"Open"_s, QString(), u"Check"_s, u"Quit__it"_s));
    auto const first = revision();
    EXPECT_EQ(revision(), first);
    rows.remove(1);
    EXPECT_THAT(labels(), SizeIs(3)) << "asked ahead, without an announcement";
    EXPECT_GT(revision(), first);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(call(u"AboutToShow"_s, { 0 }), QVariantList { true });
    auto const group = call(u"AboutToShowGroup"_s, { QVariant::fromValue(QList<int> { 0 }) });
    EXPECT_THAT(group[0].value<QList<int>>(), ElementsAre(0));
    EXPECT_THAT(told, ElementsAre(Gt(first), revision())) << "a tray may still have another click's";
}

TEST_F(NotifierMenuTest, Only_rows_that_the_latest_menu_has_enabled_are_chosen)
{
    labels();
    for (int const number : { 0, 2, 3, 4, 77, -1 })
        click(number);
    EXPECT_THAT(chosen, IsEmpty());
    click(1);
    rows.remove(0);
    click(1); // of a menu that is still up
    call(u"AboutToShow"_s, { 0 });
    click(1);
    click(5);
    EXPECT_THAT(chosen, ElementsAre(1, 1, 5));
}

TEST_F(NotifierMenuTest, Properties_are_those_asked_for)
{
    labels();
    auto const group = call(u"GetGroupProperties"_s, { QVariant::fromValue(QList<int> { 3, 77 }), QStringList() });
    auto const found = group[0].value<QList<Row>>();
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].properties, (QVariantMap { { u"label"_s, u"Check"_s }, { u"enabled"_s, false } }));
    auto const value = call(u"GetProperty"_s, { 2, u"type"_s })[0].value<QDBusVariant>().variant();
    EXPECT_EQ(value, u"separator"_s);
    auto const layout = call(u"GetLayout"_s, { 5, 0, QStringList { u"shortcut"_s } })[1].value<Layout>();
    EXPECT_EQ(layout.row.properties.keys(), QStringList { u"shortcut"_s });
}

}
}
