#include "reader/Sidebar.h"
#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "reader/Contrast.h"
#include "reader/ReaderViewFixture.h"
#include "support/Dice.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QMenu>
#include <QSignalSpy>

namespace Quillory {
namespace {

class SidebarTest : public ReaderViewTest {
protected:
    SidebarTest()
    {
        for (auto const* name : { "alpha", "beta", "gamma", "delta" })
            write(QByteArray(name) + ".md", "# " + QByteArray(name) + "\n\nText of " + name + '\n');
        connect(); // alpha, beta, delta, gamma
        view.activateWindow();
    }
    QString rows() const
    {
        QStringList titles;
        for (int row = 0; row < list.model()->rowCount(); ++row)
            titles << list.model()->index(row, 0).data().toString();
        return titles.join(u' ');
    }
    void type(QWidget& widget, QString const& keys)
    {
        QTest::keyClicks(&widget, keys);
        services.executor.settle();
    }
    void key(QWidget& widget, Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&widget, which, modifiers);
        services.executor.settle();
    }
    // The row that is painted as selected; empty when none is.
    QString selectedRow() const
    {
        auto const selected = list.selectionModel()->selectedIndexes();
        return selected.isEmpty() ? QString() : selected.first().data().toString();
    }

    Sidebar& sidebar { *view.findChild<Sidebar*>() };
    LibrarySearchField& field { sidebar.searchField() };
};

TEST_F(SidebarTest, The_list_narrows_as_one_types_and_shows_the_selection_wherever_it_holds_it)
{
    field.setFocus();
    type(field, u"TA"_s);
    EXPECT_EQ(rows(), u"beta delta"_s);
    EXPECT_EQ(sheet().id, u"alpha.md"_s) << "to type is not to choose";
    EXPECT_EQ(selectedRow(), QString());
    key(field, Qt::Key_Down);
    key(field, Qt::Key_Down);
    key(field, Qt::Key_Down);
    EXPECT_EQ(selectedRow(), u"delta"_s);
    type(field, u" x"_s);
    EXPECT_EQ(rows(), QString());
    EXPECT_FALSE(list.isVisible());
    EXPECT_EQ(label("secondary").isVisible(), true);
    key(field, Qt::Key_Return);
    EXPECT_EQ(view.focusWidget(), &field) << "there is nothing to read";
    key(field, Qt::Key_Backspace);
    EXPECT_EQ(selectedRow(), u"delta"_s);
    save("delta.md", "other");
    EXPECT_EQ(rows(), u"beta delta"_s) << "its name still holds the query";
    services.root.remove("sheets/delta.md");
    store.reload();
    settle();
    settle();
    EXPECT_EQ(rows(), u"beta"_s);
    EXPECT_EQ(sheet().id, u"alpha.md"_s);
    key(field, Qt::Key_Return);
    EXPECT_EQ(view.focusWidget(), &text);
    EXPECT_EQ(selectedRow(), u"beta"_s);
    field.setFocus();
    key(field, Qt::Key_Escape);
    EXPECT_EQ(rows(), u"alpha beta gamma"_s);
    EXPECT_EQ(selectedRow(), u"beta"_s);
    EXPECT_EQ(dismissals, 0);
    key(field, Qt::Key_Escape);
    EXPECT_EQ(dismissals, 1) << "with nothing to clear it is the window's";
}

TEST_F(SidebarTest, The_list_is_walked_by_keys_hands_on_what_is_typed_and_never_loses_the_selection)
{
    list.setFocus();
    EXPECT_EQ(sheet().id, u"alpha.md"_s) << "focus alone selects nothing";
    store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::control);
    key(list, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(selectedRow(), u"beta"_s) << "what a peek holds is no modifier";
    store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::none);
    for (auto const& [which, expected] : { std::pair(Qt::Key_End, u"gamma"_s), { Qt::Key_Down, u"gamma"_s },
             { Qt::Key_PageUp, u"alpha"_s }, { Qt::Key_PageDown, u"gamma"_s }, { Qt::Key_Up, u"delta"_s } }) {
        key(list, which);
        EXPECT_EQ(selectedRow(), expected);
    }
    QTest::mouseClick(
        list.viewport(), Qt::LeftButton, Qt::ControlModifier, list.visualRect(list.currentIndex()).center());
    EXPECT_EQ(selectedRow(), u"delta"_s) << "no modifier takes the selection away";
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.viewport()->rect().bottomLeft() + QPoint(5, -5));
    EXPECT_EQ(selectedRow(), u"delta"_s);
    type(list, u"m"_s);
    EXPECT_EQ(view.focusWidget(), &field);
    EXPECT_EQ(field.text(), u"m"_s);
    type(list, u"a"_s);
    EXPECT_EQ(rows(), u"gamma"_s);
    EXPECT_EQ(selectedRow(), QString());
    list.setFocus();
    key(list, Qt::Key_Return);
    EXPECT_EQ(selectedRow(), u"gamma"_s);
    EXPECT_EQ(view.focusWidget(), &text);
}

TEST_F(SidebarTest, A_rows_menu_acts_on_its_sheet_without_opening_it_and_marks_are_told)
{
    auto const itsMenu = [&](QPoint place) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, list.viewport()->mapToGlobal(place));
        QTest::mouseClick(list.viewport(), Qt::RightButton, {}, place);
        QCoreApplication::sendEvent(list.viewport(), &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    };
    auto const gamma = list.model()->index(3, 0);
    auto* menu = itsMenu(list.visualRect(gamma).center());
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->actions().last()->text(), u"Pin to menu bar"_s);
    for (auto* const action : menu->actions())
        action->trigger();
    menu->close();
    services.executor.settle();
    auto const path = services.root.path("sheets/gamma.md");
    EXPECT_THAT(services.fileOpener.calls, ElementsAre(u"reveal "_s + path, u"open "_s + path));
    EXPECT_EQ(sheet().id, u"alpha.md"_s);
    EXPECT_EQ(gamma.data(Qt::AccessibleTextRole).toString(), u"gamma, pinned"_s);
    save("gamma.md", "\xFF");
    EXPECT_EQ(gamma.data(Qt::AccessibleTextRole).toString(), u"gamma, pinned, with an error"_s);
    EXPECT_FALSE(itsMenu(list.viewport()->rect().bottomLeft() + QPoint(5, -5)));
    list.setFocus();
    key(list, Qt::Key_F10, Qt::ShiftModifier);
    menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    menu->actions().last()->trigger();
    menu->close();
    EXPECT_THAT(store.pinnedIDs.value(), ElementsAre(u"gamma.md"_s, u"alpha.md"_s))
        << "the keyboard's is the selected one";
}

TEST_F(SidebarTest, Rows_are_high_enough_and_readable_in_any_palette_and_tell_titles_that_have_no_room)
{
    EXPECT_GE(list.visualRect(list.currentIndex()).height(), 28);
    auto const longTitle = u"A title that has no room in a row of the list"_s;
    save("alpha.md", "# " + longTitle.toUtf8());
    auto const helpOf = [&](int row) {
        QPointF const place = list.visualRect(list.model()->index(row, 0)).center();
        QHoverEvent hover(QEvent::HoverMove, place, place, place);
        QCoreApplication::sendEvent(list.viewport(), &hover);
        return HoverHelpTrackingView::of(*list.viewport()).text();
    };
    EXPECT_EQ(helpOf(0), longTitle);
    EXPECT_EQ(helpOf(1), QString());
    EXPECT_EQ(helpOf(0), longTitle);
    store.setLibraryQuery(u"beta"_s);
    services.executor.settle();
    EXPECT_EQ(HoverHelpTrackingView::of(*list.viewport()).text(), QString()) << "its row is gone";
    Dice dice(1);
    for (int round = 0; round < 200; ++round) {
        bool const isDark = dice.oneIn(2);
        QPalette palette(isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::Base, isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::Text, isDark ? Qt::white : Qt::black);
        palette.setColor(QPalette::Highlight, QColor::fromHsv(dice.below(360), dice.below(256), dice.below(256)));
        palette.setColor(QPalette::HighlightedText, QColor::fromHsv(0, 0, dice.oneIn(2) ? 255 : dice.below(256)));
        auto const colors = SheetRowColors::fromPalette(palette);
        auto const chrome = ReaderColors::chrome.resolved(
            isDark ? ReaderColors::Appearance::dark : ReaderColors::Appearance::light);
        EXPECT_GE(contrast(colors.selectedText, colors.selection), 4.5) << round;
        EXPECT_GE(std::min(contrast(colors.focus, chrome), contrast(colors.warning, chrome)), 3) << round;
    }
}

TEST(SheetListModelTest, Views_are_told_of_what_has_changed_and_of_no_more)
{
    SheetListModel model;
    QAbstractItemModelTester const tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    Dice dice(2);
    for (int round = 0; round < 500; ++round) {
        QList<SheetListModel::Row> rows;
        for (char name = 'a'; name <= 'j'; ++name) {
            if (!dice.oneIn(3))
                rows.append({ QString(QLatin1Char(name)), QString::number(dice.below(2)), {}, dice.oneIn(2) });
        }
        model.setRows(rows);
        ASSERT_EQ(model.rowCount(), rows.size());
        for (int row = 0; row < model.rowCount(); ++row)
            ASSERT_EQ(model.rowAt(model.index(row)), rows.at(row));
        if (rows.isEmpty())
            continue;
        QSignalSpy const changes(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy const resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy const removals(&model, &QAbstractItemModel::rowsRemoved);
        rows[dice.below(rows.size())].error = u"broken"_s;
        model.setRows(rows);
        EXPECT_EQ(changes.size(), 1);
        EXPECT_EQ(resets.size() + removals.size(), 0);
    }
}

}
}
