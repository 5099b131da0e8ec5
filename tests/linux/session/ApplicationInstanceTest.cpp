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

Request const plainStart { .wish = Wish::plainStart };
Request const open { .wish = Wish::open };
Request const toggle { .wish = Wish::toggle };
Request const settings { .wish = Wish::settings };
Request const peek { .wish = Wish::peek, .held = ModifierFlags::control | ModifierFlags::option };
Request const show { .wish = Wish::show, .sheet = u"Git"_s };

// A session in which other processes are started beside the one that serves.
class BusApplicationInstanceTest : public Test {
protected:
    // Another process, which waits while this one goes on.
    Role roleOfAnother(Request const& request, QString const& startupId = {})
    {
        auto const connection = bus.connect();
        answers.clear();
        auto started = std::async(std::launch::async, [&] {
            return BusApplicationInstance(connection, { startupId }).start(request, [&](auto const& outcome) {
                answers.append(outcome ? u"done"_s : outcome.error());
            });
        });
        EXPECT_TRUE(
            loop.runUntil([&] { return started.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        return started.get();
    }

    // With the server time of a click behind it, where that is not 0.
    void startAnother(Request const& request, std::uint32_t time = 0)
    {
        auto const id = time ? u"launcher/pager/12-3-desk_TIME%1"_s.arg(time) : u"without a time"_s;
        EXPECT_EQ(roleOfAnother(request, id), Role::handedOver);
    }
    // Sheets other than Git are not there.
    Registration record()
    {
        return first->observeRequests([this](Request const& request, auto const& answer) {
            requests.push_back(request);
            answer(request.sheet == show.sheet ? ApplicationInstance::Outcome() : std::unexpected(u"Not there."_s));
        });
    }
    Role startFirst(Request const& request)
    {
        return first->start(request, [](auto const&) { });
    }

    void call(QString const& method, QVariantList const& arguments)
    {
        EXPECT_EQ(errorOf(method, arguments), QDBusError::NoError);
    }
    QDBusError::ErrorType errorOf(QString const& method, QVariantList const& arguments)
    {
        auto message = QDBusMessage::createMethodCall(
            u"org.quillory.Quillory"_s, u"/org/quillory/Quillory"_s, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        auto const reply = desktop.asyncCall(message);
        EXPECT_TRUE(loop.runUntil([&] { return reply.isFinished(); }));
        return reply.error().type();
    }

    EventLoop loop;
    PrivateBus bus;
    std::unique_ptr<BusApplicationInstance> first = std::make_unique<BusApplicationInstance>(
        bus.connect(), BusApplicationInstance::Start { u"start-1_TIME77"_s });
    QDBusConnection desktop = bus.connect();
    std::vector<Request> requests;
    QStringList answers; // to the latest start of another
};

TEST_F(BusApplicationInstanceTest, The_wishes_of_later_starts_come_to_whoever_observes_or_wait_for_that)
{
    EXPECT_EQ(startFirst(plainStart), Role::first);
    startAnother(plainStart);
    EXPECT_TRUE(requests.empty());
    auto observation = record();
    EXPECT_THAT(requests, ElementsAre(open)) << "what came before";
    startAnother(toggle, 4294967295U);
    startAnother({ .wish = Wish::none });
    startAnother(settings);
    EXPECT_THAT(requests, ElementsAre(open, Request { .wish = Wish::toggle, .userTime = 4294967295U }, settings));
    observation.end();
    startAnother(open);
    EXPECT_EQ(requests.size(), 3U);
    observation = record();
    EXPECT_THAT(requests, ElementsAre(open, _, _, open));
    first->leave();
    EXPECT_EQ(roleOfAnother(open), Role::first);
}

TEST_F(BusApplicationInstanceTest, Beside_a_first_that_does_not_answer_no_second_serves)
{
    EXPECT_EQ(startFirst(plainStart), Role::first);
    BusApplicationInstance second(desktop, { u"start-2_TIME78"_s }, std::chrono::milliseconds(1));
    EXPECT_EQ(
        second.start(open, [](auto const&) { }), Role::unanswered); // in this thread, so that the first is never served
}

TEST_F(BusApplicationInstanceTest, Desktops_call_it_by_the_common_interface)
{
    EXPECT_EQ(startFirst(plainStart), Role::first);
    auto const observation = record();
    QVariantMap const token { { u"activation-token"_s, u"x_TIME5"_s } };
    call(u"Activate"_s, { QVariantMap() });
    call(u"Open"_s, { QStringList { u"file:///a.md"_s }, token });
    call(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    for (auto const& action : { u"open"_s, u"peek"_s, u"peek-end"_s, u"settings"_s })
        call(u"ActivateAction"_s, { action, QVariantList(), QVariantMap() });
    call(u"ActivateAction"_s, { u"unknown"_s, QVariantList { 1 }, QVariantMap() });
    EXPECT_THAT(requests,
        ElementsAre(open, Request { .wish = Wish::open, .userTime = 5 }, toggle, open, Request { .wish = Wish::peek },
            Request { .wish = Wish::peekEnd }, settings));
}

TEST_F(BusApplicationInstanceTest, What_a_request_names_is_told_and_what_cant_be_done_is_answered)
{
    EXPECT_EQ(startFirst(plainStart), Role::first);
    auto const observation = record();
    for (auto const& request : { peek, show, Request { .wish = Wish::show, .sheet = u"Gone"_s } }) {
        startAnother(request);
        EXPECT_EQ(requests.back(), request);
    }
    EXPECT_THAT(answers, ElementsAre(u"Not there."_s));
    for (auto const& [action, parameter] :
        { std::pair { u"peek"_s, QVariant(u"hyper"_s) }, { u"peek"_s, 7 }, { u"show"_s, 7 } })
        EXPECT_EQ(errorOf(u"ActivateAction"_s, { action, QVariantList { parameter }, QVariantMap() }),
            QDBusError::InvalidArgs);
    EXPECT_EQ(errorOf(u"ActivateAction"_s, { u"show"_s, QVariantList(), QVariantMap() }), QDBusError::InvalidArgs);
    EXPECT_EQ(requests.size(), 3U);
}

TEST_F(BusApplicationInstanceTest, A_first_start_opens_though_it_should_toggle_or_the_bus_began_it_for_that)
{
    EXPECT_EQ(startFirst(toggle), Role::first);
    auto observation = record();
    EXPECT_THAT(requests, ElementsAre(Request { .wish = Wish::open, .userTime = 77 }));
    first->leave();
    for (auto const& request : { settings, open }) {
        EXPECT_EQ(startFirst(request), Role::first);
        EXPECT_EQ(requests.back().wish, request.wish);
        first->leave();
    }
    first.reset();
    requests.clear();

    using Start = BusApplicationInstance::Start;
    first = std::make_unique<BusApplicationInstance>(bus.connect(), Start { {}, Start::By::bus });
    EXPECT_EQ(startFirst(plainStart), Role::first);
    observation = record();
    for (int time = 0; time < 2; ++time)
        call(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    EXPECT_THAT(requests, ElementsAre(open, toggle));
}

TEST(BusApplicationInstance, Without_a_session_bus_the_program_stands_alone)
{
    QStringList answers;
    BusApplicationInstance alone { QDBusConnection(u"no such bus"_s), {} };
    EXPECT_EQ(alone.start(show, [&](auto const& outcome) { answers.append(outcome.error()); }), Role::alone);
    std::vector<Request> requests;
    auto const observation = alone.observeRequests([&](Request const& request, auto const& answer) {
        requests.push_back(request);
        answer(std::unexpected(u"Not there."_s));
    });
    EXPECT_THAT(requests, ElementsAre(show));
    EXPECT_THAT(answers, ElementsAre(u"Not there."_s));
}

}
}
