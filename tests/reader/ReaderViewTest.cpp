#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "presentation/hover_help/HoverTooltipPanel.h"
#include "reader/BarButton.h"
#include "reader/BottomBar.h"
#include "reader/BusyIndicator.h"
#include "reader/Contrast.h"
#include "reader/EmptyState.h"
#include "reader/MessageBar.h"
#include "reader/ReaderViewFixture.h"
#include "reader/WindowColors.h"
#include "support/SamplePictures.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QScrollBar>

namespace Quillory {
namespace {

// That the children share the area out among them.
void expectTiled(QWidget const& parent, QRegion left)
{
    for (auto const* const child : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!child->isVisible())
            continue;
        EXPECT_EQ(left & child->geometry(), QRegion(child->geometry())) << child->objectName().toStdString();
        left -= child->geometry();
    }
    // Where room is short the layout may round a point away.
    EXPECT_LE(left.boundingRect().height(), 1) << left.boundingRect().top() << " to " << left.boundingRect().bottom();
}

TEST_F(ReaderViewTest, Bars_list_and_text_share_the_smallest_panel_in_their_colours)
{
    auto const words = QByteArray("words without end ").repeated(40).trimmed();
    write("a.md", "# " + words + "\n\ntext\n");
    write("b.md", "# Second\n");
    connect();
    save("a.md", "\xFF");
    store.message.assignAs<MessageBar>(QString::fromUtf8(words));
    services.executor.settle();
    auto& message = *view.findChild<MessageBar*>();
    view.resize(440, 360);
    EXPECT_TRUE(message.isVisible() && label("caption").isVisible());
    EXPECT_EQ(label("caption").text(), *sheet().error + u" Showing the last readable version."_s);
    EXPECT_EQ(view.size(), QSize(440, 360)) << "nothing asks for more";
    expectTiled(view, view.rect().adjusted(1, 1, -1, -1));
    expectTiled(*view.findChild<QWidget*>(u"surface"_s), view.findChild<QWidget*>(u"surface"_s)->rect());
    EXPECT_EQ(list.horizontalScrollBar()->isVisible(), false);
    for (auto const* const button : view.findChildren<BarButton*>()) {
        bool const isWhole = !button->isVisible() || button->height() >= button->sizeHint().height();
        EXPECT_TRUE(isWhole) << button->accessibleName().toStdString();
    }

    // Dark windows around light pages, and all dark.
    for (auto const appearance : { ReaderColors::Appearance::light, ReaderColors::Appearance::dark }) {
        auto const isLight = appearance == ReaderColors::Appearance::light;
        QPalette palette(QColor(60, 60, 60), QColor(40, 40, 40));
        palette.setColor(QPalette::Base, isLight ? Qt::white : Qt::black);
        palette.setColor(QPalette::Text, isLight ? Qt::black : Qt::white);
        QApplication::setPalette(palette);
        QCoreApplication::processEvents();
        EXPECT_EQ(text.colors().appearance, appearance);
        auto const image = view.grab().toImage();
        auto const at = [&](QWidget const& widget, QPoint point) {
            return image.pixelColor(widget.mapTo(&view, point));
        };
        EXPECT_GE(contrast(at(view, { 0, 50 }), ReaderColors::surface.resolved(appearance)), 3);
        EXPECT_EQ(at(*view.topBar(), { 2, 2 }), ReaderColors::chrome.resolved(appearance));
        EXPECT_EQ(at(message, { 2, 2 }), ReaderColors::chrome.resolved(appearance));
        EXPECT_EQ(at(list, list.rect().bottomLeft()), ReaderColors::chrome.resolved(appearance));
        EXPECT_EQ(at(label("title"), { 2, 2 }), ReaderColors::surface.resolved(appearance));
        EXPECT_EQ(at(*list.viewport(), list.visualRect(list.currentIndex()).topRight() - QPoint(9, -3)),
            SheetRowColors::fromPalette(QPalette()).selection);
        for (auto const* const separator : view.findChildren<QWidget*>(u"separator"_s))
            EXPECT_EQ(at(*separator, {}), ReaderColors::codeBorder.resolved(appearance));
    }
    QApplication::setPalette(QPalette());
    message.findChild<BarButton*>()->click();
    services.executor.settle();
    EXPECT_FALSE(message.isVisible());
}

TEST_F(ReaderViewTest, A_load_is_seen_and_nothing_is_said_of_the_folder_before_its_end)
{
    auto& busy = *view.findChild<BottomBar*>()->findChild<BusyIndicator*>();
    auto const saysEmpty = [&] {
        auto const labels = view.findChild<EmptyState*>()->findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [](auto* each) { return each->isVisible() && each->text().contains(u"No cheat"); });
    };
    store.connect(services.root.path("sheets"));
    services.executor.advance(BusyIndicator::appearsAfter);
    EXPECT_TRUE(busy.isTurning());
    auto const picture = busy.grab().toImage();
    services.executor.advance(250ms);
    EXPECT_NE(busy.grab().toImage(), picture) << "it goes on turning";
    EXPECT_FALSE(saysEmpty());
    services.executor.settle();
    EXPECT_FALSE(busy.isTurning());
    EXPECT_TRUE(saysEmpty());
}

TEST_F(ReaderViewTest, Keys_and_clicks_reach_the_store_and_the_program)
{
    write("a.md", "# First\n\n[link](https://example.org) and `code`\n");
    write("b.md", "# Second\n");
    connect();
    auto const pointAt = [&](QString const& word) {
        auto const box = text.boundingRect({ string().indexOf(word), word.size() });
        return (box.center() - text.scrollOrigin()).toPoint();
    };
    auto const click = [&](QString const& word) { QTest::mouseClick(&text, Qt::LeftButton, {}, pointAt(word)); };
    for (auto const& [word, help] : { std::pair(u"link"_s, u"Opens https://example.org"_s), { u"and"_s, QString() } }) {
        QTest::mouseMove(&text, pointAt(word));
        EXPECT_EQ(text.accessibleDescription(), help);
        services.executor.advance(HoverHelpTrackingView::delay);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        auto const* const tooltip = text.window()->findChild<HoverTooltipPanel*>();
        EXPECT_EQ(tooltip ? tooltip->text() : QString(), help);
    }
    QTest::mousePress(&text, Qt::LeftButton, {}, pointAt(u"and"_s));
    QTest::mouseMove(&text, pointAt(u"link"_s));
    QTest::mouseRelease(&text, Qt::LeftButton, {}, pointAt(u"link"_s));
    EXPECT_EQ(text.cursor().shape(), Qt::PointingHandCursor) << "a selection that ends on it";
    text.setSelection({});
    click(u"link"_s);
    EXPECT_THAT(services.fileOpener.calls, ElementsAre(u"open https://example.org"_s));
    click(u"code"_s);
    EXPECT_EQ(services.clipboard.text(Clipboard::Pasteboard::general), u"code"_s);
    store.setLearningModeEnabled(true);
    services.executor.settle();
    EXPECT_FALSE(text.copyTarget(0));
    store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::command);
    services.executor.settle();
    QTest::keyClick(&text, Qt::Key_Right, Qt::MetaModifier);
    services.executor.settle();
    expectTheSelectedSheet();
    EXPECT_EQ(sheet().id, u"b.md"_s) << "what the peek holds is no modifier";
    press(Qt::Key_Escape);
    EXPECT_EQ(dismissals, 1);

    text.setFocus();
    clickRow(0);
    EXPECT_EQ(sheet().id, u"a.md"_s);
    EXPECT_EQ(view.focusWidget(), &text) << "the keyboard stays with the text";
    services.root.remove("sheets/a.md");
    store.reload();
    services.executor.settle();
    expectTheSelectedSheet();
    EXPECT_EQ(list.model()->rowCount(), 1);
}

TEST_F(ReaderViewTest, Without_a_sheet_it_says_what_to_do)
{
    auto& choose = *view.findChild<EmptyState*>()->findChild<BarButton*>();
    EXPECT_TRUE(choose.isVisible());
    EXPECT_FALSE(text.isVisible());
    EXPECT_EQ(view.windowTitle(), u"Quillory"_s);
    services.openPanels.showWindow(view.winId());
    choose.click();
    services.openPanels.choose(services.root.path("sheets"));
    services.executor.settle();
    EXPECT_TRUE(choose.isVisible());
    auto const says = [&](QString const& words) {
        return std::ranges::any_of(view.findChildren<QLabel*>(),
            [&](auto const* each) { return each->isVisible() && each->text().contains(words); });
    };
    EXPECT_TRUE(says(u"No cheat sheets"_s));
    save("a.md", "\xFF");
    EXPECT_EQ(label("caption").text(), sheet().error) << "there was no readable version";
    save("a.md", "# First\n");
    EXPECT_TRUE(text.isVisible());
    EXPECT_FALSE(says(u"No cheat sheets"_s) || label("caption").isVisible());
}

TEST_F(ReaderViewTest, A_new_start_shows_the_selected_row_and_nothing_that_the_user_did)
{
    for (int number = 0; number < 90; ++number)
        write("sheet " + QByteArray::number(100 + number) + ".md", "`code` code\n");
    connect();
    select(u"sheet 150.md"_s);
    store.findQuery.assignAs<ReaderView>(u"code"_s);
    services.executor.settle();
    auto const firstMatch = text.selection();
    EXPECT_TRUE(text.copyTarget(0));
    text.selectAll();
    list.scrollToTop();
    auto const isInSight = [&] { return list.viewport()->rect().contains(list.visualRect(list.currentIndex())); };
    ASSERT_FALSE(isInSight());
    view.startAfresh();
    EXPECT_TRUE(isInSight());
    view.refresh();
    EXPECT_EQ(text.selection(), firstMatch);
    EXPECT_EQ(text.copiedTarget(), std::nullopt);
}

TEST_F(ReaderViewTest, Find_is_served_once_a_request_on_the_text_now_shown_and_its_status_told_later)
{
    write("a.md", "Alpha beta\n");
    write("b.md", "beta one, Bêta two\n");
    connect();
    select(u"b.md"_s);
    using enum LibraryStore::FindDirection;
    struct Case {
        QString query;
        LibraryStore::FindDirection direction;
        TextSelection selection;
        QString status;
    };
    for (auto const& [query, direction, selection, status] : { Case { u"beta"_s, forwards, { 0, 4 }, u"Match"_s },
             { u"beta"_s, forwards, { 10, 14 }, u"Match"_s }, { u"beta"_s, forwards, { 0, 4 }, u"Match"_s },
             { u"beta"_s, backwards, { 10, 14 }, u"Match"_s }, { u"t"_s, forwards, { 2, 3 }, u"Match"_s },
             { u"nowhere"_s, forwards, {}, u"No matches"_s }, { {}, forwards, {}, {} } }) {
        SCOPED_TRACE(query.toStdString());
        auto const before = store.findStatus.value();
        store.findQuery.assignAs<ReaderView>(query);
        store.requestFind(direction);
        view.refresh();
        EXPECT_EQ(text.selection(), selection);
        EXPECT_EQ(store.findStatus.value(), before) << "what is being read must not change under its reader";
        services.executor.settle();
        EXPECT_EQ(store.findStatus.value(), status);
        view.refresh();
        EXPECT_EQ(text.selection(), selection) << "no request, no move";
    }
    store.findQuery.assignAs<ReaderView>(u"alpha"_s);
    store.requestFind(forwards);
    select(u"a.md"_s);
    EXPECT_EQ(selected(), u"Alpha"_s) << "a request that comes with another sheet is for that sheet";
}

TEST_F(ReaderViewTest, Code_asks_for_its_width_within_bounds)
{
    for (auto const& [characters, width] :
        { std::pair(0, 330.0), { 24, 330.0 }, { 100, 100 * 16 * 0.65 + 80 }, { 5'000, 12'000.0 } }) {
        auto const code = u"\U0001F468\u200D\U0001F469"_s.repeated(characters).toUtf8();
        write("a.md", "```\na\n" + code + "\n```");
        connect();
        EXPECT_DOUBLE_EQ(text.textWidths().container, std::max(text.textWidth(), width)) << characters;
    }
}

TEST_F(ReaderViewTest, What_was_read_last_is_kept_rendered_within_bounds)
{
    for (char name = 'a'; name <= 'r'; ++name)
        write(QByteArray(1, name) + ".md", QByteArray("text ") + name);
    for (char name = 'w'; name <= 'z'; ++name)
        write(QByteArray(1, name) + ".md", QByteArray("many lines\n\n").repeated(NativeReader::mostKept / 25) + name);
    connect();
    auto const read = [&](char first, char last) {
        for (char name = first; name <= last; ++name)
            select(QLatin1Char(name) + u".md"_s);
        return string(); // held, so that no other text comes to stand in its place
    };
    auto const kept = read('a', 'a');
    read('b', 'q');
    EXPECT_EQ(read('a', 'a').constData(), kept.constData());
    read('b', 'r');
    auto const madeAgain = read('a', 'a');
    EXPECT_NE(madeAgain.constData(), kept.constData()) << "seventeen were read since";
    read('w', 'z');
    EXPECT_NE(read('a', 'a').constData(), madeAgain.constData()) << "too much was read since";
}

TEST_F(ReaderViewTest, A_long_sheet_shows_its_beginning_until_a_worker_or_what_needs_it_brings_the_rest)
{
    write("a.md", "short");
    connect();
    auto source = QByteArray("## Heading\n\nSome words.\n\n```\ncode\n```\n\n").repeated(9'000) + "the end";
    auto const showBeginning = [&] {
        select(u"a.md"_s);
        store.scrollPositions.clear();
        save("long.md", source += '.'); // one that was not read before
        store.select(u"long.md"_s);
        services.executor.turn();
        EXPECT_FALSE(text.isSettled());
        EXPECT_LT(string().size(), 100'000);
    };
    std::vector<std::function<void()>> const needs { [&] { QTest::keyClick(&text, Qt::Key_End); },
        [&] { EXPECT_TRUE(text.findNext(u"the end"_s, false)); }, [&] { text.setScrollOrigin({ 0, 1e9 }); },
        [&] { EXPECT_GT(QAccessible::queryAccessibleInterface(&text)->childCount(), 8'999); } };
    for (auto const& need : needs) {
        showBeginning();
        need();
        expectTheSelectedSheet();
        settle();
        expectTheSelectedSheet();
    }

    showBeginning();
    text.setScrollOrigin({ 0, 50'000 });
    text.setSelection({ 20, 30 });
    auto const place = text.scrollAnchor();
    auto const buttons = text.codeButtons();
    settle();
    expectTheSelectedSheet();
    EXPECT_EQ(text.scrollAnchor(), place);
    EXPECT_EQ(text.selection(), TextSelection(20, 30));
    EXPECT_EQ(text.codeButtons(), buttons);

    showBeginning();
    select(u"a.md"_s); // the rest is of no use any more, nor is a beginning kept
    expectTheSelectedSheet();
    select(u"long.md"_s);
    expectTheSelectedSheet();

    auto const showFurtherDown = [&] {
        showBeginning();
        select(u"a.md"_s);
        store.scrollPositions.insert(u"long.md"_s, { 0, 40'000 });
        save("long.md", source += '.');
        store.select(u"long.md"_s);
        services.executor.turn();
        EXPECT_EQ(text.scrollOrigin(), QPointF());
    };
    showFurtherDown();
    settle();
    expectTheSelectedSheet();
    auto const isThere = [&] { return std::abs(text.scrollOrigin().y() - 40'000) < 2'000; };
    EXPECT_TRUE(isThere());

    showFurtherDown();
    select(u"a.md"_s);
    select(u"long.md"_s);
    EXPECT_TRUE(isThere()) << "left before it was there";
    showFurtherDown();
    text.setScrollOrigin({ 0, 300 });
    settle();
    EXPECT_EQ(text.scrollOrigin(), QPointF(0, 300)) << "the user was faster";
}

TEST_F(ReaderViewTest, A_long_sheet_that_changes_while_it_is_read_stays_until_a_worker_has_rendered_it)
{
    auto const source = QByteArray("Some words.\n\n").repeated(12'000);
    write("long.md", source);
    connect();
    settle();
    text.setScrollOrigin({ 0, 20'000 });
    auto const place = text.scrollAnchor();
    auto const change = [&](QByteArray const& end) {
        write("long.md", source + end);
        store.reload();
        for (int steps = 0; steps < 20 && !sheet().source.endsWith(QString::fromUtf8(end)); ++steps) {
            services.executor.turn();
            services.executor.runAndFinishWork();
        }
        services.executor.turn();
    };
    auto const before = string();
    change("one");
    EXPECT_EQ(string(), before);
    change("two"); // a turn later the first is rendered
    settle();
    expectTheSelectedSheet();
    EXPECT_EQ(text.scrollAnchor(), place);
}

TEST_F(ReaderViewTest, Pictures_that_come_or_change_are_rendered)
{
    write("a.md", "text ![](a.png)\n");
    connect();
    for (auto const& size : { QSize(20, 20), QSize(30, 30) }) {
        save("a.png", encodedPicture("png", size));
        EXPECT_EQ(text.boundingRect({ 5, 1 }).width(), size.width());
    }
}

TEST_F(ReaderViewTest, No_starter_scrolls_sideways_in_a_window_of_the_usual_size)
{
    view.resize(880, 640);
    QDir const starters(QStringLiteral(QUILLORY_GOLDEN_SHEETS "/../../../../resources/Starters"));
    for (auto const& name : starters.entryList(QDir::Files)) {
        QFile file(starters.filePath(name));
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        write(name.toUtf8(), file.readAll());
    }
    connect();
    EXPECT_EQ(list.model()->rowCount(), 11);
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        clickRow(row);
        while (!text.isSettled())
            services.executor.turn();
        EXPECT_LE(text.contentSize().width(), text.width()) << sheet().id.toStdString();
    }
}

TEST_F(ReaderViewTest, A_line_under_the_title_says_that_the_text_is_scrolled)
{
    write("a.md", longSheet("a"));
    write("b.md", "short");
    connect();
    auto const& header = *label("title").parentWidget();
    QPoint const place = header.mapTo(&view, QPoint(header.width() / 2, header.height() - 1));
    auto const hasLine = [&] {
        return view.grab(QRect(place, QSize(1, 1))).toImage().pixelColor(0, 0)
            == WindowColors::fromPalette(view.palette()).separator;
    };
    EXPECT_FALSE(hasLine());
    press(Qt::Key_Down);
    EXPECT_TRUE(hasLine());
    select(u"b.md"_s);
    EXPECT_FALSE(hasLine());
    select(u"a.md"_s);
    EXPECT_TRUE(hasLine()) << "at the place that was left";
}

}
}
