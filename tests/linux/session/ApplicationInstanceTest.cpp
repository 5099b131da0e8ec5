#include "PrivateBus.h"

#include "linux/freedesktop/BusApplicationInstance.h"
#include "support/EventLoop.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <future>

namespace Quillory {
namespace {

using Wish = ApplicationInstance::Wish;
using Role = ApplicationInstance::Role;
using Request = ApplicationInstance::Request;

Request const open { .wish = Wish::open, .userTime = {} };
Request const toggle { .wish = Wish::toggle, .userTime = {} };
Request const settings { .wish = Wish::settings, .userTime = {} };

// A session in which other processes are started beside the one that serves.
class BusApplicationInstanceTest : public Test {
protected:
    // Another process, which waits while this one goes on.
    Role roleOfAnother(Wish wish, QString const& startupId = {})
    {
        auto const connection = bus.connect();
        auto started = std::async(
            std::launch::async, [&] { return BusApplicationInstance(connection, { startupId }).start(wish); });
        EXPECT_TRUE(
            loop.runUntil([&] { return started.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        return started.get();
    }

    // With the server time of a click behind it, where that is not 0.
    void startAnother(Wish wish, std::uint32_t time = 0)
    {
        auto const id = time ? u"launcher/pager/12-3-desk_TIME%1"_s.arg(time) : u"without a time"_s;
        EXPECT_EQ(roleOfAnother(wish, id), Role::handedOver);
    }
    Registration record()
    {
        return first->observeRequests([this](Request const& request) { requests.push_back(request); });
    }

    void call(QString const& method, QVariantList const& arguments)
    {
        auto message = QDBusMessage::createMethodCall(
            u"org.quillory.Quillory"_s, u"/org/quillory/Quillory"_s, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        auto const reply = desktop.asyncCall(message);
        EXPECT_TRUE(loop.runUntil([&] { return reply.isFinished(); }));
        EXPECT_FALSE(reply.isError()) << reply.error().message().toStdString();
    }

    EventLoop loop;
    PrivateBus bus;
    std::unique_ptr<BusApplicationInstance> first = std::make_unique<BusApplicationInstance>(
        bus.connect(), BusApplicationInstance::Start { u"start-1_TIME77"_s });
    QDBusConnection desktop = bus.connect();
    std::vector<Request> requests;
};

TEST_F(BusApplicationInstanceTest, The_wishes_of_later_starts_come_to_whoever_observes_or_wait_for_that)
{
    EXPECT_EQ(first->start(Wish::open), Role::first);
    startAnother(Wish::open);
    EXPECT_TRUE(requests.empty());
    auto observation = record();
    EXPECT_THAT(requests, ElementsAre(open)) << "what came before";
    startAnother(Wish::toggle, 4294967295U);
    startAnother(Wish::none);
    startAnother(Wish::settings);
    EXPECT_THAT(requests, ElementsAre(open, Request { .wish = Wish::toggle, .userTime = 4294967295U }, settings));
    observation.end();
    startAnother(Wish::open);
    EXPECT_EQ(requests.size(), 3U);
    observation = record();
    EXPECT_THAT(requests, ElementsAre(open, _, _, open));
    first->leave();
    EXPECT_EQ(roleOfAnother(Wish::open), Role::first);
}

TEST_F(BusApplicationInstanceTest, Beside_a_first_that_does_not_answer_no_second_serves)
{
    EXPECT_EQ(first->start(Wish::open), Role::first);
    BusApplicationInstance second(desktop, { u"start-2_TIME78"_s }, std::chrono::milliseconds(1));
    EXPECT_EQ(second.start(Wish::open), Role::unanswered); // in this thread, so that the first is never served
}

TEST_F(BusApplicationInstanceTest, Desktops_call_it_by_the_common_interface)
{
    EXPECT_EQ(first->start(Wish::open), Role::first);
    auto const observation = record();
    QVariantMap const token { { u"activation-token"_s, u"x_TIME5"_s } };
    call(u"Activate"_s, { QVariantMap() });
    call(u"Open"_s, { QStringList { u"file:///a.md"_s }, token });
    call(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    call(u"ActivateAction"_s, { u"settings"_s, QVariantList(), QVariantMap() });
    call(u"ActivateAction"_s, { u"unknown"_s, QVariantList { 1 }, QVariantMap() });
    EXPECT_THAT(requests, ElementsAre(open, Request { .wish = Wish::open, .userTime = 5 }, toggle, settings));
}

TEST_F(BusApplicationInstanceTest, A_first_start_opens_though_it_should_toggle_or_the_bus_began_it_for_that)
{
    EXPECT_EQ(first->start(Wish::toggle), Role::first);
    auto observation = record();
    EXPECT_THAT(requests, ElementsAre(Request { .wish = Wish::open, .userTime = 77 }));
    first->leave();
    EXPECT_EQ(first->start(Wish::settings), Role::first);
    EXPECT_EQ(requests.back().wish, Wish::settings);
    first.reset();
    requests.clear();

    using Start = BusApplicationInstance::Start;
    first = std::make_unique<BusApplicationInstance>(bus.connect(), Start { {}, Start::By::bus });
    EXPECT_EQ(first->start(Wish::open), Role::first);
    observation = record();
    for (int time = 0; time < 2; ++time)
        call(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    EXPECT_THAT(requests, ElementsAre(open, toggle));
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
