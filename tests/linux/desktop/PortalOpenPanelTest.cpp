#include "linux/freedesktop/PortalOpenPanel.h"
#include "StandInPortal.h"
#include "support/EventLoop.h"

namespace Quillory {
namespace {

using Response = OpenPanel::Response;

class PortalOpenPanelTest : public Test {
protected:
    void begin(OpenPanelSettings const& settings)
    {
        answer.reset();
        panel = std::make_unique<PortalOpenPanel>(QDBusConnection::sessionBus());
        panel->beginSheetModal(0x40a, settings, [this](Response response) {
            EXPECT_FALSE(answer);
            answer = response;
            panel->orderOut();
        });
    }
    bool isAnswered(Response response)
    {
        return loop.runUntil([&] { return answer.has_value(); }) && answer == response;
    }

    EventLoop loop;
    StandInPortal portal;
    OpenPanelSettings const folders { .canChooseDirectories = true,
        .canChooseFiles = false,
        .prompt = u"Choose folder"_s,
        .message = u"Choose well."_s };
    std::optional<Response> answer;
    std::unique_ptr<PortalOpenPanel> panel;
};

TEST_F(PortalOpenPanelTest, A_folder_comes_from_the_desktops_dialog_over_the_window)
{
    portal.start();
    portal.results.insert(u"uris"_s, QStringList { u"file:///run/doc/1a/My%20%C3%BC%23"_s });
    begin(folders);
    EXPECT_TRUE(isAnswered(Response::ok));
    EXPECT_EQ(panel->url(), u"/run/doc/1a/My ü#"_s);
    EXPECT_EQ(portal.parentWindow, u"x11:40a"_s);
    EXPECT_THAT(portal.calls, ElementsAre(u"OpenFile"_s, u"Choose well."_s));
    EXPECT_EQ(portal.options, (QVariantMap { { u"directory"_s, true }, { u"accept_label"_s, u"Choose folder"_s } }));

    portal.response = 1;
    begin(folders);
    EXPECT_TRUE(isAnswered(Response::cancel));
    EXPECT_EQ(panel->failure(), QString());
}

TEST_F(PortalOpenPanelTest, It_always_ends)
{
    begin(folders); // no portal
    EXPECT_TRUE(isAnswered(Response::cancel));
    EXPECT_NE(panel->failure(), QString());

    portal.response.reset();
    portal.start();
    begin(folders);
    ASSERT_TRUE(loop.runUntil([&] { return portal.calls.size() == 2; }));
    portal.service.reset(); // with its dialog
    EXPECT_TRUE(isAnswered(Response::cancel));
    EXPECT_NE(panel->failure(), QString());

    portal.start();
    begin(folders);
    ASSERT_TRUE(loop.runUntil([&] { return portal.calls.size() == 4; }));
    panel->cancel();
    EXPECT_EQ(answer, Response::cancel);
    EXPECT_TRUE(loop.runUntil([&] { return portal.calls.last() == u"Close"_s; }));

    answer.reset();
    PortalOpenPanel withoutBus(QDBusConnection(u"none"_s));
    withoutBus.beginSheetModal(1, folders, [this](Response response) { answer = response; });
    EXPECT_EQ(answer, Response::cancel);
}

}
}
