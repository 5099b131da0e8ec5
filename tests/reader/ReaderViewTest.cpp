#include "reader/ReaderView.h"
#include "reader/BusyIndicator.h"
#include "reader/EmptyState.h"
#include "reader/MessageBar.h"
#include "reader/SheetList.h"
#include "rendering/MarkdownRenderer.h"
#include "support/Dice.h"
#include "support/FakeLibraryServices.h"
#include "support/SamplePictures.h"
#include "support/Test.h"
#include "text/OneLine.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <map>

namespace Quillory {
namespace {

// Lines of every length, so that heights that were never measured are wrong.
QByteArray longSheet(QByteArray const& title, int paragraphs = 150)
{
    auto source = "# " + title + "\n\n";
    for (int number = 0; number < paragraphs; ++number)
        source += (title + ' ' + QByteArray::number(number) + " é ").repeated(1 + number * 13 % 30) + "\n\n";
    return source + "```\ncode\n```\n";
}

// The reader over a folder, with a list, bars and text.
class ReaderViewTest : public Test {
protected:
    ReaderViewTest()
    {
        services.root.makeFolder("sheets");
        view.resize(800, 500);
        view.show();
    }

    void write(QByteArray const& name, QByteArray const& contents) { services.root.write("sheets/" + name, contents); }
    void save(QByteArray const& name, QByteArray const& contents)
    {
        write(name, contents);
        store.reload();
        services.executor.settle();
    }
    void connect()
    {
        store.connect(services.root.path("sheets"));
        services.executor.settle();
    }
    Sheet const& sheet() const { return *store.selectedSheet(); }
    void select(QString const& id)
    {
        store.select(id);
        services.executor.settle();
    }
    void press(Qt::Key key)
    {
        QTest::keyClick(&text, key);
        services.executor.settle();
    }
    void clickRow(int row)
    {
        auto const index = list.model()->index(row, 0);
        list.scrollTo(index);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
        services.executor.settle();
    }
    QLabel& label(char const* name) const { return *view.findChild<QLabel*>(QLatin1StringView(name)); }
    QString const& string() const { return text.rendered().text.string(); }
    QString selected() const { return string().mid(text.selection().start(), text.selection().length()); }

    void expectTheSelectedSheet() const
    {
        auto const title = oneLine(sheet().title);
        EXPECT_EQ(label("title").text(), title);
        EXPECT_EQ(view.windowTitle(), title);
        EXPECT_EQ(list.currentIndex().data().toString(), title);
        auto const rendered = sheet().shortcuts
            ? ReaderDocument(ReaderDocument::Shortcuts { *sheet().shortcuts, sheet().images, store.textSize },
                  text.textWidth(), text.fonts(), text.colors())
                  .rendered()
            : MarkdownRenderer::render(*sheet().parsed, sheet().title, sheet().images, store.textSize);
        EXPECT_EQ(text.rendered(), rendered) << sheet().id.toStdString();
    }

    FakeLibraryServices services;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
    int dismissals = 0;
    ReaderView view { store, { services.executor }, [this] { ++dismissals; } };
    ReaderTextView& text { *view.textView() };
    SheetList& list { *view.findChild<SheetList*>() };
};

// That the children share the area out among them.
void expectTiled(QWidget const& parent, QRegion left)
{
    for (auto const* const child : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!child->isVisible())
            continue;
        EXPECT_EQ(left & child->geometry(), QRegion(child->geometry())) << child->objectName().toStdString();
        left -= child->geometry();
    }
    EXPECT_TRUE(left.isEmpty()) << left.boundingRect().top() << " to " << left.boundingRect().bottom();
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
        EXPECT_EQ(at(view, { 0, 50 }), ReaderColors::codeBorder.resolved(appearance));
        EXPECT_EQ(at(*view.topBar(), { 2, 2 }), ReaderColors::chrome.resolved(appearance));
        EXPECT_EQ(at(message, { 2, 2 }), ReaderColors::chrome.resolved(appearance));
        EXPECT_EQ(at(list, list.rect().bottomLeft()), ReaderColors::chrome.resolved(appearance));
        EXPECT_EQ(at(label("title"), { 2, 2 }), ReaderColors::surface.resolved(appearance));
        EXPECT_EQ(at(*list.viewport(), list.visualRect(list.currentIndex()).topRight() - QPoint(9, -3)),
            QPalette().color(QPalette::Highlight));
        for (auto const* const separator : view.findChildren<QWidget*>(u"separator"_s))
            EXPECT_EQ(at(*separator, {}), ReaderColors::codeBorder.resolved(appearance));
    }
    QApplication::setPalette(QPalette());
    message.findChild<QToolButton*>()->click();
    services.executor.settle();
    EXPECT_FALSE(message.isVisible());
}

TEST_F(ReaderViewTest, A_load_is_seen_and_nothing_is_said_of_the_folder_before_its_end)
{
    auto const& busy = *view.findChild<BusyIndicator*>();
    auto const saysEmpty = [&] {
        auto const labels = view.findChild<EmptyState*>()->findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [](auto* each) { return each->isVisible() && each->text().contains(u"No cheat"); });
    };
    store.connect(services.root.path("sheets"));
    services.executor.advance(BusyIndicator::appearsAfter);
    EXPECT_TRUE(busy.isTurning());
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
    auto const click = [&](QString const& word) {
        auto const box = text.boundingRect({ string().indexOf(word), word.size() });
        QTest::mouseClick(&text, Qt::LeftButton, {}, (box.center() - text.scrollOrigin()).toPoint());
    };
    for (auto const& [word, help] : { std::pair(u"link"_s, u"Opens https://example.org"_s), { u"and"_s, QString() } }) {
        auto const box = text.boundingRect({ string().indexOf(word), word.size() });
        QTest::mouseMove(&text, (box.center() - text.scrollOrigin()).toPoint());
        EXPECT_EQ(text.toolTip(), help);
        EXPECT_EQ(text.accessibleDescription(), help);
    }
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
    auto& choose = *view.findChild<QPushButton*>();
    EXPECT_TRUE(choose.isVisible());
    EXPECT_FALSE(text.isVisible());
    EXPECT_EQ(view.windowTitle(), u"Quillory"_s);
    services.openPanels.showWindow(view.winId());
    choose.click();
    services.openPanels.choose(services.root.path("sheets"));
    services.executor.settle();
    EXPECT_FALSE(choose.isVisible());
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

TEST_F(ReaderViewTest, Pictures_that_come_or_change_are_rendered)
{
    write("a.md", "text ![](a.png)\n");
    connect();
    for (auto const& size : { QSize(20, 20), QSize(30, 30) }) {
        save("a.png", encodedPicture("png", size));
        EXPECT_EQ(text.boundingRect({ 5, 1 }).width(), size.width());
    }
}

// A reader's life in random steps. What must hold: what is shown is the selected sheet, as a fresh rendering for the width
// gives it; what is not rendered again keeps its selection and its place; and a sheet that comes back as it was read shows
// the very line at its top that was there, whatever was laid out, dropped or resized between.
class ReaderLife : public ReaderViewTest {
protected:
    struct Left {
        TextAnchor anchor;
        double x = 0;
        TextWidths widths { 0 };
        double textSize = 0;
    };

    ReaderLife()
    {
        QFile structured(QStringLiteral(QUILLORY_GOLDEN_SHEETS "/../../../../resources/Starters/xcode.quillory.json"));
        write("keys.quillory.json", structured.open(QFile::ReadOnly) ? structured.readAll() : QByteArray());
        write("long.md", longSheet("long"));
        for (int number = 10; number < 27; ++number)
            write("short " + QByteArray::number(number) + ".md",
                "# Short " + QByteArray::number(number) + "\n\nlittle to read\n");
        QByteArray table = "\n\n|a|b|\n|-|-|\n";
        for (int row = 0; row < 200; ++row)
            table += "| row | " + QByteArray("é words ").repeated(row * 7 % 40) + " |\n";
        write("wide.md", longSheet("wide", 30) + table + "\n```\n" + QByteArray("x").repeated(150));
        connect();
    }

    void read(int row)
    {
        left[sheet().id] = { text.scrollAnchor(), text.scrollOrigin().x(), text.textWidths(), store.textSize };
        auto const before = sheet().id;
        if (auto const way = row - list.currentIndex().row(); std::abs(way) == 1 && text.selection().isEmpty())
            press(way > 0 ? Qt::Key_Right : Qt::Key_Left);
        else
            clickRow(row);
        auto const place = left.find(sheet().id);
        if (sheet().id == before)
            return;
        EXPECT_EQ(text.selection(), TextSelection());
        if (place == left.end())
            EXPECT_EQ(text.scrollOrigin(), QPointF());
        else if (place->second.widths == text.textWidths() && place->second.textSize == store.textSize)
            expectAt(place->second);
    }
    void expectAt(Left const& place)
    {
        EXPECT_EQ(text.scrollAnchor().location, place.anchor.location) << sheet().id.toStdString();
        EXPECT_NEAR(text.scrollAnchor().offset, place.anchor.offset, 1e-6) << sheet().id.toStdString();
        EXPECT_EQ(text.scrollOrigin().x(), text.constrained({ place.x, 0 }).x());
    }
    // What does not touch the text leaves the selection and the place.
    void expectKept(std::function<void()> const& step)
    {
        text.setSelection({ dice.below(string().size()), dice.below(string().size()) });
        auto const selection = text.selection();
        auto const origin = text.scrollOrigin();
        step();
        services.executor.settle();
        EXPECT_EQ(text.selection(), selection);
        EXPECT_EQ(text.scrollOrigin(), text.constrained(origin));
    }
    // What renders the text anew keeps the place, but near the end, which is known only once it is laid out.
    void expectRendered(std::function<void()> const& step)
    {
        auto const before = text.constrained(text.scrollOrigin());
        text.setSelection({ 0, 1 });
        step();
        services.executor.settle();
        auto const isNearEnd = before.y() + 2 * text.height() > text.contentSize().height();
        EXPECT_TRUE(isNearEnd || text.scrollOrigin() == text.constrained(before));
    }
    void expectTold(std::function<void()> const& step)
    {
        auto const before = text.scrollOrigin();
        step();
        EXPECT_TRUE(text.scrollOrigin() == before || store.scrollPositions.value(sheet().id) == text.scrollOrigin());
    }
    void resize()
    {
        auto const line = text.scrollAnchor().location;
        auto const height = [&] { return text.boundingRect({ line, 1 }).top() - text.scrollOrigin().y(); };
        auto const before = height();
        auto const wasAtTop = text.scrollOrigin().y() < ReaderTextView::inset;
        expectTold([&] { view.resize(650 + 213 * dice.below(5), 500); });
        auto const isAtEnd = text.scrollOrigin() == text.constrained(text.scrollOrigin() + QPointF(0, 1));
        EXPECT_TRUE(wasAtTop || isAtEnd || std::abs(height() - before) < 0.01) << height() << " after " << before;
    }

    static constexpr int wide = 18;

    std::vector<std::pair<char const*, std::function<void()>>> const steps {
        { "reads", [this] { read(dice.anyOf(std::array { 0, 1, wide })); } },
        { "reads another", [this] { read(dice.anyOf(std::array { 0, 1, wide })); } },
        { "reads any", [this] { read(dice.below(wide + 1)); } },
        { "reads all the short ones",
            [this] {
                for (int row = 2; row < wide; ++row)
                    read(row);
            } },
        { "scrolls",
            [this] {
                auto const size = text.contentSize();
                expectTold([&] {
                    text.setScrollOrigin({ size.width() * dice.below(3) / 2, size.height() * dice.below(101) / 100 });
                });
            } },
        { "turns the wheel",
            [this] {
                QWheelEvent wheel({ 50, 50 }, text.mapToGlobal(QPointF(50, 50)), {}, { 0, -120 }, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
                auto const before = text.scrollOrigin();
                expectTold([&] { QCoreApplication::sendEvent(&text, &wheel); });
                auto const isAtEnd = text.scrollOrigin() == text.constrained(before + QPointF(0, 60));
                EXPECT_TRUE(isAtEnd || text.scrollOrigin().y() > before.y() + 30) << "by lines, and not by points";
            } },
        { "resizes", [this] { resize(); } },
        { "changes the text size",
            [this] {
                expectRendered([this] {
                    store.setTextSize(std::clamp(store.textSize + (dice.oneIn(2) ? 1.0 : -1.0), 14.0, 17.0));
                });
            } },
        { "goes, comes, and is scanned again",
            [this] {
                expectKept([this] {
                    view.hide();
                    view.show();
                    store.setLearningModeEnabled(dice.oneIn(2));
                    store.reload();
                });
                EXPECT_EQ(text.learningModeEnabled(), store.learningModeEnabled);
            } },
        { "is broken and mended",
            [this] {
                auto const name = sheet().id.toUtf8();
                auto const readable = services.root.read("sheets/" + name);
                expectKept([&] { save(name, "\xFF"); });
                EXPECT_TRUE(label("caption").isVisible());
                expectKept([&] { save(name, readable); });
                EXPECT_FALSE(label("caption").isVisible());
            } },
        { "is saved with a line more",
            [this] {
                auto const name = sheet().id.toUtf8();
                if (!sheet().shortcuts)
                    expectRendered([&] { save(name, services.root.read("sheets/" + name) + "\n\nmore\n"); });
            } },
        { "becomes exact",
            [this] {
                auto const place = Left { text.scrollAnchor(), text.scrollOrigin().x() };
                EXPECT_TRUE(QTest::qWaitFor([this] { return text.isSettled(); }));
                expectAt(place);
            } },
    };

    Dice dice { 12 };
    std::map<QString, Left> left;
};

TEST_F(ReaderLife, What_is_shown_is_what_was_chosen_and_sheets_come_back_as_they_were_left)
{
    std::string taken;
    for (int number = 0; number < 400 && !HasFailure(); ++number) {
        auto const& [name, take] = dice.anyOf(steps);
        taken += name + ("; now " + sheet().id.toStdString()) + '\n';
        take();
        expectTheSelectedSheet();
    }
    EXPECT_FALSE(HasFailure()) << taken;

    clickRow(1);
    text.setScrollOrigin({ 0, 500 });
    text.setSelection({ 3, 8 });
    services.root.write("others/long.md", services.root.read("sheets/long.md"));
    store.connect(services.root.path("others"));
    services.executor.settle();
    EXPECT_EQ(text.scrollOrigin(), QPointF()) << "the same name and text, but another sheet";
    EXPECT_TRUE(text.selection().isEmpty());
}

}
}
