#include "reader/ReaderView.h"
#include "support/FakeLibraryServices.h"

#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::Not;

Sheet markdownSheet(QString const& id, QString const& source)
{
    return { .id = id, .title = id, .source = source, .parsed = ParsedMarkdown::parsingUtf8(source.toUtf8()) };
}

// Lines of every length, so that heights that were never measured are wrong.
QString longSource(QString const& word, int paragraphs = 150)
{
    QString source;
    for (int number = 0; number < paragraphs; ++number)
        source += u"%1 %2 é "_s.arg(word).arg(number).repeated(1 + number * 13 % 30) + u"\n\n"_s;
    return source + u"```\ncode\n```\n"_s;
}

Sheet structuredSheet(QString const& id)
{
    Sheet sheet { .id = id, .title = id, .source = id, .shortcuts = ShortcutSheet {} };
    for (int section = 0; section < 12; ++section) {
        ShortcutSheet::Section added { .title = u"Section %1"_s.arg(section) };
        for (int entry = 0; entry < 1 + section * 7 % 30; ++entry) {
            auto const step = ShortcutSheet::Step { { u"shift"_s, u"command"_s }, u"p"_s };
            added.entries.append({ .title = u"entry %1 "_s.arg(entry).repeated(1 + entry % 4),
                .shortcuts = { { .steps = { step, step } } } });
        }
        sheet.shortcuts->sections.append(added);
    }
    return sheet;
}

class NativeReaderTest : public testing::Test {
protected:
    NativeReaderTest()
    {
        window.resize(600, 400);
        reader.scrollView().resize(600, 400);
        window.show();
    }

    void settle()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return view.isSettled(); }));
    }
    QString const& text() const { return view.rendered().text.string(); }
    QString selected() const { return text().mid(view.selection().start(), view.selection().length()); }
    void find(QString const& query, LibraryStore::FindDirection direction = LibraryStore::FindDirection::forwards)
    {
        store.findQuery.assignAs<ReaderView>(query);
        store.requestFind(direction);
        reader.update(*shown);
    }
    void show(Sheet const& sheet)
    {
        shown = &sheet;
        reader.update(sheet);
    }

    FakeLibraryServices services;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
    QWidget window;
    int dismissals = 0;
    NativeReader reader { store, { services.executor }, [this] { ++dismissals; }, &window };
    ReaderTextView& view { reader.scrollView().textView() };
    Sheet const* shown = nullptr;
};

TEST_F(NativeReaderTest, Only_a_change_of_what_is_read_renders_anew)
{
    auto sheet = markdownSheet(u"a.md"_s, longSource(u"word"_s));
    sheet.images.insert(u"a.png"_s, { {}, 7 });
    show(sheet);
    struct Case {
        std::string name;
        std::function<void(Sheet&)> change;
        bool isRendered;
    };
    Case const cases[] {
        { "a rescan that finds the same", [](Sheet&) {}, false },
        { "an error line", [](Sheet& other) { other.error = u"can't be read"_s; }, false },
        { "Learning Mode", [this](Sheet&) { store.setLearningModeEnabled(true); }, false },
        { "a peek", [this](Sheet&) { store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::command); },
            false },
        { "another picture under the old name", [](Sheet& other) { other.images[u"a.png"_s].fingerprint = 8; }, true },
        { "one picture more", [](Sheet& other) { other.images.insert(u"b.png"_s, { {}, 7 }); }, true },
        { "another text size", [this](Sheet&) { store.setTextSize(20); }, true },
        { "another text", [](Sheet& other) { other = markdownSheet(other.id, other.source + u"more"_s); }, true },
    };
    for (auto const& [name, change, isRendered] : cases) {
        view.setScrollOrigin({ 0, 2'000 });
        settle();
        view.setSelection({ 5, 9 });
        auto const before = view.scrollOrigin();
        change(sheet);
        reader.update(sheet);
        EXPECT_EQ(view.selection().isEmpty(), isRendered) << name;
        EXPECT_EQ(view.scrollOrigin(), before) << name;
    }
    EXPECT_TRUE(view.learningModeEnabled());
    EXPECT_EQ(view.peekModifiers, ModifierFlags::command);
    EXPECT_EQ(window.windowTitle(), u"a.md"_s);
    view.onDismiss();
    EXPECT_EQ(dismissals, 1);
    EXPECT_FALSE(view.copyTarget(0));
    store.setLearningModeEnabled(false);
    reader.update(sheet);
    EXPECT_TRUE(view.copyTarget(0));
    EXPECT_EQ(services.clipboard.text(Clipboard::Pasteboard::general), u"code\n"_s);
}

TEST_F(NativeReaderTest, Find_is_served_once_a_request_on_the_text_now_shown_and_its_status_told_later)
{
    auto const first = markdownSheet(u"a.md"_s, u"Alpha beta"_s);
    auto const second = markdownSheet(u"b.md"_s, u"beta one, Bêta two"_s);
    show(first);
    show(second);
    find(u"beta"_s);
    EXPECT_EQ(view.selection(), (TextSelection { 0, 4 }));
    EXPECT_EQ(store.findStatus.value(), QString()) << "what is being read must not change under its reader";
    services.executor.runPosted();
    EXPECT_EQ(store.findStatus.value(), u"Match"_s);
    find(u"beta"_s);
    EXPECT_EQ(selected(), u"Bêta"_s);
    reader.update(second);
    EXPECT_EQ(selected(), u"Bêta"_s) << "no request, no move";
    find(u"beta"_s);
    EXPECT_EQ(view.selection().start(), 0) << "round the end";
    find(u"beta"_s, LibraryStore::FindDirection::backwards);
    EXPECT_EQ(selected(), u"Bêta"_s);
    find(u"t"_s);
    EXPECT_EQ(view.selection().start(), 2) << "a new query starts from the top";
    find(u"nowhere"_s);
    EXPECT_TRUE(view.selection().isEmpty());
    services.executor.runPosted();
    EXPECT_EQ(store.findStatus.value(), u"No matches"_s);
    find(QString());
    EXPECT_EQ(view.selection(), TextSelection());
    services.executor.runPosted();
    EXPECT_EQ(store.findStatus.value(), QString());

    store.findQuery.assignAs<ReaderView>(u"alpha"_s);
    store.requestFind(LibraryStore::FindDirection::forwards);
    show(first);
    EXPECT_EQ(selected(), u"Alpha"_s) << "a request that comes with another sheet is for that sheet";
}

TEST_F(NativeReaderTest, Code_asks_for_its_width_within_bounds)
{
    struct Case {
        int characters;
        double width;
    };
    for (auto const& [characters, width] :
        { Case { 0, 330 }, { 24, 330 }, { 100, 100 * 16 * 0.65 + 80 }, { 5'000, 12'000 } }) {
        auto const code = u"\U0001F468\u200D\U0001F469"_s.repeated(characters);
        auto const sheet = markdownSheet(u"%1.md"_s.arg(characters), u"```\na\n"_s + code + u"\n```"_s);
        show(sheet);
        EXPECT_DOUBLE_EQ(view.textWidths().container, std::max(view.textWidth(), width)) << characters;
    }
}

TEST_F(NativeReaderTest, What_was_read_last_is_kept_rendered_within_bounds)
{
    std::vector<Sheet> sheets;
    for (int number = 0; number < 18; ++number)
        sheets.push_back(markdownSheet(u"%1.md"_s.arg(number), u"text %1"_s.arg(number)));
    // Held, so that no other text comes to stand in its place.
    auto const textOf = [this](Sheet const& sheet) { return show(sheet), text(); };
    auto const kept = textOf(sheets[0]);
    for (int number = 1; number < 17; ++number)
        show(sheets[static_cast<std::size_t>(number)]);
    EXPECT_EQ(textOf(sheets[0]).constData(), kept.constData());
    for (int number = 1; number < 18; ++number)
        show(sheets[static_cast<std::size_t>(number)]);
    auto const madeAgain = textOf(sheets[0]);
    EXPECT_NE(madeAgain.constData(), kept.constData()) << "seventeen were read since";

    auto const large = u"many lines\n\n"_s.repeated(NativeReader::mostKept / 20);
    Sheet const big[] { markdownSheet(u"x"_s, large), markdownSheet(u"y"_s, large), markdownSheet(u"z"_s, large) };
    for (auto const& sheet : big)
        show(sheet);
    EXPECT_NE(textOf(sheets[0]).constData(), madeAgain.constData()) << "too much was read since";
}

TEST_F(NativeReaderTest, Bars_and_text_agree_on_light_or_dark)
{
    QPalette darkWindowsLightPages(QColor(60, 60, 60), QColor(40, 40, 40));
    darkWindowsLightPages.setColor(QPalette::Base, Qt::white);
    darkWindowsLightPages.setColor(QPalette::Text, Qt::black);
    ReaderView content(store, { services.executor }, [] { });
    content.setPalette(darkWindowsLightPages);
    EXPECT_EQ(content.grab().toImage().pixelColor(content.topBar()->geometry().center()), QColor(0xF4, 0xF3, 0xF1));
    EXPECT_EQ(content.textView()->colors().appearance, ReaderColors::Appearance::light);
}

// A reader's life in random steps. What must hold: a sheet that comes back as it was read shows the very line at its top
// that was there, whatever was laid out, dropped or resized between; and a structured sheet is always rendered for its width.
class NativeReaderLife : public NativeReaderTest {
protected:
    struct Left {
        TextAnchor anchor;
        double x = 0;
        TextWidths widths { 0 };
        double textSize = 0;
    };

    NativeReaderLife()
    {
        sheets.push_back(markdownSheet(u"long.md"_s, longSource(u"word"_s)));
        sheets.push_back(structuredSheet(u"keys.quillory.json"_s));
        sheets.push_back(markdownSheet(u"wide.md"_s, longSource(u"wide"_s, 30) + u"```\n"_s + u"x"_s.repeated(150)));
        for (int number = 0; number < 17; ++number)
            sheets.push_back(markdownSheet(u"short %1.md"_s.arg(number), u"little to read"_s));
        read(sheets[0]);
    }

    int dice(int faces) { return std::uniform_int_distribution(0, faces - 1)(random); }

    void read(Sheet const& sheet)
    {
        if (shown) {
            left[shown->id] = { view.scrollAnchor(), view.scrollOrigin().x(), view.textWidths(), store.textSize };
        }
        show(sheet);
        auto const place = left.find(sheet.id);
        if (place == left.end()) {
            EXPECT_EQ(view.scrollOrigin(), QPointF());
        } else if (place->second.widths == view.textWidths() && place->second.textSize == store.textSize) {
            expectAt(place->second);
        }
    }
    void expectAt(Left const& place)
    {
        EXPECT_EQ(view.scrollAnchor().location, place.anchor.location) << shown->id.toStdString();
        EXPECT_NEAR(view.scrollAnchor().offset, place.anchor.offset, 1e-6) << shown->id.toStdString();
        EXPECT_EQ(view.scrollOrigin().x(), view.constrained({ place.x, 0 }).x());
    }
    void expectToldIfNot(QPointF before)
    {
        if (view.scrollOrigin() != before) {
            EXPECT_EQ(store.scrollPositions.value(shown->id), view.scrollOrigin());
        }
    }

    std::string step()
    {
        switch (dice(10)) {
        case 0:
        case 1:
        case 2: {
            auto const& next = sheets[static_cast<std::size_t>(
                dice(dice(4) == 0 ? static_cast<int>(sheets.size()) : 3))];
            if (&next != shown)
                read(next);
            return "reads " + next.id.toStdString();
        }
        case 3:
            for (std::size_t other = 3; other < sheets.size(); ++other)
                read(sheets[other]);
            return "reads all the short ones";
        case 4:
        case 5: {
            auto const before = view.scrollOrigin();
            view.setScrollOrigin(
                { view.contentSize().width() * dice(3) / 2, view.contentSize().height() * dice(101) / 100 });
            expectToldIfNot(before);
            return "scrolls";
        }
        case 6: {
            auto const selection = view.selection();
            auto const before = view.scrollOrigin();
            reader.scrollView().resize(450 + 213 * dice(5), 400);
            EXPECT_EQ(view.selection(), selection);
            expectToldIfNot(before);
            return "resizes";
        }
        case 7: {
            auto const before = view.constrained(view.scrollOrigin());
            auto const size = store.textSize + (dice(2) == 0 ? 1.0 : -1.0);
            store.setTextSize(std::clamp(size, 14.0, 17.0));
            reader.update(*shown);
            EXPECT_EQ(view.scrollOrigin(), view.constrained(before));
            return "changes the text size";
        }
        case 8: {
            view.setSelection({ dice(static_cast<int>(text().size())), dice(static_cast<int>(text().size())) });
            auto const selection = view.selection();
            auto const origin = view.scrollOrigin();
            window.setVisible(!window.isVisible());
            window.show();
            auto const again = *shown;
            reader.update(again);
            EXPECT_EQ(view.selection(), selection);
            EXPECT_EQ(view.scrollOrigin(), origin);
            return "goes, comes and is scanned again";
        }
        default: {
            auto const place = Left { view.scrollAnchor(), view.scrollOrigin().x(), { 0 }, 0 };
            settle();
            expectAt(place);
            return "becomes exact";
        }
        }
    }

    std::mt19937 random { 12 };
    std::vector<Sheet> sheets;
    std::map<QString, Left> left;
};

TEST_F(NativeReaderLife, Sheets_come_back_as_they_were_left)
{
    std::string steps;
    for (int number = 0; number < 400 && !HasFailure(); ++number) {
        steps += step() + "; ";
        if (shown->shortcuts) {
            ReaderDocument const fresh(ReaderDocument::Shortcuts { *shown->shortcuts, shown->images, store.textSize },
                view.textWidth(), view.fonts(), view.colors());
            EXPECT_EQ(view.rendered(), fresh.rendered()) << "rendered for another width";
            EXPECT_EQ(reader.scrollView().horizontalScrollBar()->maximum(), 0);
        }
    }
    EXPECT_FALSE(HasFailure()) << steps;

    read(sheets[0]);
    view.setScrollOrigin({ 0, 500 });
    view.setSelection({ 3, 8 });
    store.connect(u"/another folder"_s);
    show(sheets[0]);
    EXPECT_EQ(view.scrollOrigin(), QPointF()) << "the same name and text, but another sheet";
    EXPECT_TRUE(view.selection().isEmpty());
    EXPECT_TRUE(store.scrollPositions.isEmpty());
}

}
}
