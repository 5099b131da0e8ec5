#include "e2e/AssistiveClient.h"
#include "e2e/ReaderOnADesktop.h"
#include "support/SignalRecorder.h"

#include <QDBusVariant>

namespace Quillory {
namespace {

// The selections of the server: the root window has them, which no program answers for, until somebody takes them.
struct Selections {
    void take() const
    {
        for (auto const selection : { clipboard, drag, primary })
            xcb_set_selection_owner(connection->handle(), connection->root(), selection, XCB_CURRENT_TIME);
        (void)isUntouched(clipboard); // an answer means that all of it is done
    }
    bool isUntouched(xcb_atom_t selection) const
    {
        auto* const xcb = connection->handle();
        XcbOwned<xcb_get_selection_owner_reply_t> const reply(
            xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection), nullptr));
        return reply && reply->owner == connection->root();
    }

    std::unique_ptr<X11Connection> connection = X11Connection::open().value();
    xcb_atom_t clipboard = connection->atom("CLIPBOARD");
    xcb_atom_t drag = connection->atom("XdndSelection");
    xcb_atom_t primary = XCB_ATOM_PRIMARY;
};

class LearningModeTest : public ReaderOnADesktop {
protected:
    struct Road {
        char const* name;
        xcb_atom_t taken;
        std::function<void()> take;
    };

    LearningModeTest() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

    void showSheet(bool learningMode)
    {
        isLearning = learningMode;
        program.save(
            u"a.md"_s, "# Sheet\n\n🙂 Some `inline code` to [read](https://example.org/it).\n\n```\nls -l\n```\n");
        program.setSetting(u"learningModeEnabled"_s, learningMode);
        start();
        ASSERT_TRUE(comesUp());
        ASSERT_TRUE(shows(u"Sheet"_s));
        ASSERT_TRUE(Desktop::eventually([&] {
            text = client.find(u"Cheat sheet content"_s);
            return text && client.children(*text).size() == 1;
        }));
    }

    // Offsets count characters, of which the smiling one is the first.
    QPoint at(int offset) const { return client.middle(*text, offset); }
    QPoint inlineCode() const { return at(9); }
    AssistiveClient::Object button() const { return client.children(*text).constFirst(); }

    void drag(QPoint from, QPoint to)
    {
        desktop.keyboard().pressButton(from.x(), from.y());
        desktop.keyboard().movePointer((from.x() + to.x()) / 2, from.y());
        desktop.keyboard().movePointer(to.x(), to.y());
        desktop.keyboard().releaseButton();
    }
    void takeMenu()
    {
        auto const reader = desktop.reader().value().window;
        auto const windows = desktop.windowsOfOwner(reader);
        desktop.keyboard().movePointer(inlineCode().x(), inlineCode().y());
        desktop.keyboard().clickButton(3);
        // The window manager holds a press back for a moment: keys would overtake it.
        EXPECT_TRUE(Desktop::eventually([&] { return desktop.windowsOfOwner(reader) > windows; }));
        desktop.play(u"Up Return"_s);
        if (isLearning) // its only item can't be chosen
            desktop.play(u"Escape"_s);
    }

    std::vector<Road> roads()
    {
        auto const clipboard = selections.clipboard, primary = selections.primary;
        return {
            { "the menu", clipboard, [this] { takeMenu(); } },
            { "a click on inline code", clipboard, [this] { desktop.click(inlineCode()); } },
            { "a click on the button", clipboard, [this] { desktop.click(client.middle(button())); } },
            { "a drag over text", primary, [this] { drag(at(2), at(8)); } },
            { "a drag of what is selected now", selections.drag, [this] { drag(at(4), at(4) + QPoint(0, 200)); } },
            { "an arrow key", primary, [this] { desktop.play(u"shift+Left"_s); } },
            { "a selection by keys", primary, [this] { desktop.play(u"ctrl+A"_s); } },
            { "Ctrl+C", clipboard, [this] { desktop.play(u"ctrl+C"_s); } },
            { "Super+C", clipboard, [this] { desktop.play(u"super+C"_s); } },
        };
    }

    AssistiveClient client;
    Selections const selections;
    bool isLearning = false;
    std::optional<AssistiveClient::Object> text;
};

TEST_F(LearningModeTest, With_the_mode_off_every_road_copies_and_copies_and_banners_are_announced)
{
    ASSERT_NO_FATAL_FAILURE(showSheet(false));
    SignalRecorder announcements;
    ASSERT_TRUE(client.hear("Announcement", &announcements, SLOT(record(QDBusMessage))));
    EXPECT_THAT(client.interfaces(*text),
        AllOf(Contains(u"org.a11y.atspi.Text"_s), Not(Contains(u"org.a11y.atspi.EditableText"_s))));
    EXPECT_THAT(client.text(*text), Eq(u"🙂 Some inline code to read.\n\nls -l\n"_s));
    EXPECT_THAT(client.actions(*text), ElementsAre(u"Copy inline code"_s, u"Copy ls -l\n"_s));
    EXPECT_THAT(client.name(button()), Eq(u"Copy ls -l\n"_s));
    for (auto const& road : roads()) {
        selections.take();
        ASSERT_TRUE(selections.isUntouched(road.taken));
        road.take();
        EXPECT_TRUE(Desktop::eventually([&] { return !selections.isUntouched(road.taken); })) << road.name;
        // The program looks whether its copy took. Its answer says that it has done so.
        EXPECT_FALSE(client.text(*text).isEmpty());
    }
    ASSERT_TRUE(Desktop::eventually([&] { return !announcements.heard.isEmpty(); }));
    EXPECT_EQ(announcements.heard[0].signature(), u"siiv(so)"_s);
    EXPECT_EQ(announcements.heard[0].arguments().value(1), 1) << "a polite one";
    EXPECT_EQ(announcements.heard[0].arguments().value(3).value<QDBusVariant>().variant(), u"Copied"_s);
    auto const link = at(static_cast<int>(u"🙂 Some inline code to r"_s.toUcs4().size()));
    desktop.keyboard().movePointer(link.x(), link.y());
    EXPECT_TRUE(Desktop::eventually([&] { return client.description(*text).contains(u"https://example.org/it"_s); }));
    desktop.click(client.middle(button()));
    EXPECT_TRUE(Desktop::eventually([&] { return client.description(button()) == u"Copied"_s; }));
    EXPECT_TRUE(Desktop::eventually([&] { return client.description(button()) == u"Copy command"_s; }));
    program.save(u"a.md"_s, "\xFF");
    auto const said = [&] {
        return announcements.heard.last().arguments().value(3).value<QDBusVariant>().variant().toString();
    };
    EXPECT_TRUE(Desktop::eventually([&] { return said().contains(u"Showing the last readable version."_s); }));
}

TEST_F(LearningModeTest, With_the_mode_on_no_road_touches_any_selection)
{
    ASSERT_NO_FATAL_FAILURE(showSheet(true));
    EXPECT_THAT(client.actions(*text), IsEmpty());
    EXPECT_EQ(client.description(button()), u"Copying is disabled in Learning Mode"_s);
    selections.take();
    for (auto const& road : roads())
        road.take();
    // Events are dealt with in order: once this one has been, all of them have.
    desktop.play(u"Escape"_s);
    ASSERT_TRUE(Desktop::eventually([&] { return !desktop.isReaderOnScreen(); }));
    for (auto const selection : { selections.clipboard, selections.primary, selections.drag })
        EXPECT_TRUE(selections.isUntouched(selection)) << selection;
}

}
}
