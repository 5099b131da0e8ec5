#include "e2e/AssistiveClient.h"
#include "e2e/ReaderOnADesktop.h"

#include <gmock/gmock.h>

using namespace Quillory;
using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

// Owns the selections of the server, that of drags too, until somebody takes them.
class Selections {
public:
    Selections()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_window(xcb_generate_id(m_connection))
    {
        auto const* const screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        m_clipboard = atom("CLIPBOARD");
        m_drag = atom("XdndSelection");
    }
    ~Selections() { xcb_disconnect(m_connection); }
    Selections(Selections const&) = delete;
    Selections& operator=(Selections const&) = delete;

    void take()
    {
        for (auto const selection : { m_clipboard, m_drag, xcb_atom_t { XCB_ATOM_PRIMARY } })
            xcb_set_selection_owner(m_connection, m_window, selection, XCB_CURRENT_TIME);
        ownsClipboard();
    }
    bool ownsClipboard() const { return owns(m_clipboard); }
    bool ownsPrimary() const { return owns(XCB_ATOM_PRIMARY); }
    bool ownsDrag() const { return owns(m_drag); }

private:
    xcb_atom_t atom(std::string_view name) const
    {
        auto const request = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
        return XcbOwned<xcb_intern_atom_reply_t>(xcb_intern_atom_reply(m_connection, request, nullptr))->atom;
    }
    bool owns(xcb_atom_t selection) const
    {
        XcbOwned<xcb_get_selection_owner_reply_t> const reply(
            xcb_get_selection_owner_reply(m_connection, xcb_get_selection_owner(m_connection, selection), nullptr));
        return reply && reply->owner == m_window;
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_clipboard = XCB_ATOM_NONE;
    xcb_atom_t m_drag = XCB_ATOM_NONE;
};

class LearningModeTest : public ReaderOnADesktop {
protected:
    struct Road {
        std::string name;
        std::function<void()> take;
        std::function<bool()> isUntouched;
    };

    LearningModeTest() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

    void showSheet(bool learningMode)
    {
        program.save(u"a.md"_s, "# Sheet\n\nSome `inline code` to read.\n\n```\nls -l\n```\n");
        program.setSetting(u"learningModeEnabled"_s, learningMode);
        start();
        ASSERT_TRUE(comesUp());
        ASSERT_TRUE(shows(u"Sheet"_s));
        ASSERT_TRUE(Desktop::eventually([&] {
            text = client.find(u"Cheat sheet content"_s);
            return text && client.children(*text).size() == 1;
        }));
    }

    QPoint at(int offset) const { return client.characterExtents(*text, offset).center(); }
    QPoint inlineCode() const { return at(static_cast<int>(client.text(*text).indexOf(u"inline"_s)) + 2); }
    AssistiveClient::Object button() const { return client.children(*text).constFirst(); }

    // What the screen shows where a menu of that point opens.
    QImage below(QPoint point)
    {
        auto const reader = desktop.reader();
        return reader ? desktop.picture().copy(QRect(point - reader->frame.topLeft(), QSize(80, 20))) : QImage();
    }

    void drag(QPoint from, QPoint to)
    {
        desktop.keyboard().pressButton(from.x(), from.y());
        desktop.keyboard().movePointer((from.x() + to.x()) / 2, from.y());
        desktop.keyboard().movePointer(to.x(), to.y());
        desktop.keyboard().releaseButton();
    }
    // The toolkit takes a selection at the time of the last event that it saw.
    void makeAnEvent()
    {
        auto const point = inlineCode() + QPoint(0, 60);
        desktop.keyboard().movePointer(point.x(), point.y());
        desktop.keyboard().movePointer(point.x() + 1, point.y());
    }

    std::vector<Road> roads()
    {
        auto const clipboard = [this] { return selections.ownsClipboard(); };
        auto const primary = [this] { return selections.ownsPrimary(); };
        return {
            { "the menu",
                [this] {
                    auto const point = inlineCode();
                    desktop.keyboard().movePointer(point.x(), point.y());
                    QImage before;
                    ASSERT_TRUE(Desktop::eventually([&] { return !(before = below(point)).isNull(); }));
                    desktop.keyboard().clickButton(3);
                    // The window manager holds a press back for a moment: keys would overtake it.
                    EXPECT_TRUE(Desktop::eventually([=, this] {
                        auto const now = below(point);
                        return !now.isNull() && now != before;
                    }));
                    desktop.play(u"Up Return"_s);
                },
                clipboard },
            { "a click on inline code", [this] { desktop.click(inlineCode()); }, clipboard },
            { "a click on the button", [this] { desktop.click(client.extents(button()).center()); }, clipboard },
            { "an accessibility action",
                [this] {
                    makeAnEvent();
                    client.doAction(*text, 0);
                },
                clipboard },
            { "the button pressed by an assistive program",
                [this] {
                    makeAnEvent();
                    client.doAction(button(), 0);
                },
                clipboard },
            { "a drag over text", [this] { drag(at(0), at(8)); }, primary },
            { "a drag of the selected text",
                [this] {
                    drag(at(0), at(8));
                    drag(at(2), at(2) + QPoint(0, 200));
                },
                [this] { return selections.ownsDrag(); } },
            { "a selection by keys", [this] { desktop.play(u"ctrl+A"_s); }, primary },
            { "Ctrl+C", [this] { desktop.play(u"ctrl+C"_s); }, clipboard },
            { "Super+C", [this] { desktop.play(u"super+C"_s); }, clipboard },
        };
    }

    AssistiveClient client;
    Selections selections;
    std::optional<AssistiveClient::Object> text;
};

TEST_F(LearningModeTest, With_the_mode_off_every_road_copies)
{
    ASSERT_NO_FATAL_FAILURE(showSheet(false));
    EXPECT_THAT(client.interfaces(*text), Contains(u"org.a11y.atspi.Text"_s));
    EXPECT_THAT(client.interfaces(*text), Not(Contains(u"org.a11y.atspi.EditableText"_s)));
    EXPECT_THAT(client.text(*text), testing::Eq(u"Some inline code to read.\n\nls -l\n"_s));
    for (auto const& road : roads()) {
        selections.take();
        ASSERT_TRUE(road.isUntouched());
        road.take();
        EXPECT_TRUE(Desktop::eventually([&] { return !road.isUntouched(); })) << road.name;
        // The program looks whether its copy took. Its answer says that it has done so.
        EXPECT_FALSE(client.text(*text).isEmpty());
    }
}

TEST_F(LearningModeTest, With_the_mode_on_no_road_touches_either_selection)
{
    ASSERT_NO_FATAL_FAILURE(showSheet(true));
    EXPECT_THAT(client.actions(*text), IsEmpty());
    EXPECT_EQ(client.description(button()), u"Copying is disabled in Learning Mode"_s);
    selections.take();
    for (auto const& road : roads()) {
        road.take();
        if (road.name == "the menu")
            desktop.play(u"Escape"_s);
    }
    // Events are dealt with in order: once this one has been, all of them have.
    desktop.play(u"Escape"_s);
    ASSERT_TRUE(Desktop::eventually([&] { return !desktop.isReaderOnScreen(); }));
    EXPECT_TRUE(selections.ownsClipboard());
    EXPECT_TRUE(selections.ownsPrimary());
    EXPECT_TRUE(selections.ownsDrag());
}

}
