#include "PrivateBus.h"

#include "platform/linux/freedesktop/BusApplicationInstance.h"
#include "support/EventLoop.h"
#include "support/FakeApplicationInstance.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <gmock/gmock.h>

#include <future>
#include <memory>
#include <vector>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Wish = ApplicationInstance::Wish;
using Role = ApplicationInstance::Role;
using Request = ApplicationInstance::Request;

Request const open { .wish = Wish::open, .userTime = {} };
Request const toggle { .wish = Wish::toggle, .userTime = {} };

class BusApplicationInstanceTest : public testing::Test {
protected:
    // Another process, which waits while this one goes on.
    Role startAnother(Wish wish, QString const& startupId = {})
    {
        auto const connection = bus.connect();
        auto started = std::async(
            std::launch::async, [&] { return BusApplicationInstance(connection, startupId).start(wish); });
        EXPECT_TRUE(
            loop.runUntil([&] { return started.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        return started.get();
    }

    Registration record()
    {
        return first->observeRequests([this](Request const& request) { requests.push_back(request); });
    }

    EventLoop loop;
    PrivateBus bus;
    std::unique_ptr<BusApplicationInstance> first = std::make_unique<BusApplicationInstance>(
        bus.connect(), u"start-1_TIME77"_s);
    std::vector<Request> requests;
};

TEST_F(BusApplicationInstanceTest, A_second_start_hands_its_wish_over_with_the_time_of_the_click)
{
    EXPECT_EQ(first->start(Wish::open), Role::first);
    EXPECT_EQ(startAnother(Wish::open), Role::handedOver);
    EXPECT_TRUE(requests.empty());
    auto observation = record();
    EXPECT_THAT(requests, ElementsAre(open)) << "what came before";
    EXPECT_EQ(startAnother(Wish::toggle, u"launcher/pager/12-3-desk_TIME4294967295"_s), Role::handedOver);
    EXPECT_EQ(startAnother(Wish::open, u"without a time"_s), Role::handedOver);
    EXPECT_EQ(startAnother(Wish::none), Role::handedOver);
    EXPECT_THAT(requests, ElementsAre(open, Request { .wish = Wish::toggle, .userTime = 4294967295U }, open));
}

TEST_F(BusApplicationInstanceTest, The_name_is_free_again_after_the_end)
{
    EXPECT_EQ(first->start(Wish::open), Role::first);
    first.reset();
    EXPECT_EQ(startAnother(Wish::open), Role::first);
}

TEST_F(BusApplicationInstanceTest, A_first_start_that_should_toggle_opens)
{
    EXPECT_EQ(first->start(Wish::toggle), Role::first);
    auto const observation = record();
    EXPECT_THAT(requests, ElementsAre(Request { .wish = Wish::open, .userTime = 77 }));
}

TEST_F(BusApplicationInstanceTest, Desktops_call_it_by_the_common_interface)
{
    EXPECT_EQ(first->start(Wish::open), Role::first);
    auto const observation = record();
    auto desktop = bus.connect();
    auto const call = [&](QString const& method, QVariantList const& arguments) {
        auto message = QDBusMessage::createMethodCall(
            u"org.quillory.Quillory"_s, u"/org/quillory/Quillory"_s, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        auto const reply = desktop.asyncCall(message);
        EXPECT_TRUE(loop.runUntil([&] { return reply.isFinished(); }));
        EXPECT_FALSE(reply.isError()) << reply.error().message().toStdString();
    };
    QVariantMap const token { { u"activation-token"_s, u"x_TIME5"_s } };
    call(u"Activate"_s, { QVariantMap() });
    call(u"Open"_s, { QStringList { u"file:///a.md"_s }, token });
    call(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    call(u"ActivateAction"_s, { u"unknown"_s, QVariantList { 1 }, QVariantMap() });
    EXPECT_THAT(requests, ElementsAre(open, Request { .wish = Wish::open, .userTime = 5 }, toggle));
}

TEST(BusApplicationInstance, Without_a_session_bus_the_program_stands_alone)
{
    BusApplicationInstance alone { QDBusConnection(u"no such bus"_s), {} };
    EXPECT_EQ(alone.start(Wish::toggle), Role::alone);
    std::vector<Request> requests;
    auto const observation = alone.observeRequests([&](Request const& request) { requests.push_back(request); });
    EXPECT_THAT(requests, ElementsAre(open));
}

}
}
