#include "PrivateBus.h"

#include "linux/freedesktop/BusApplicationInstance.h"
#include "support/EventLoop.h"

namespace Quillory {
namespace {

using Wish = ApplicationInstance::Wish;
using Request = ApplicationInstance::Request;

// What users and desktops start, beside a program that serves and knows the sheet Git.
class CommandTest : public Test {
protected:
    CommandTest()
    {
        EXPECT_EQ(first.start({}, [](auto const&) { }), ApplicationInstance::Role::first);
    }

    // The exit code; what was said stands in `said`.
    int run(QStringList const& arguments)
    {
        QProcess command;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        environment.insert(u"DESKTOP_STARTUP_ID"_s, u"key_TIME77"_s);
        environment.remove(u"DISPLAY"_s); // the program proper says that it can't serve
        command.setProcessEnvironment(environment);
        command.setProcessChannelMode(QProcess::MergedChannels);
        command.start(QStringLiteral(QUILLORY_COMMAND), arguments);
        EXPECT_TRUE(loop.runUntil([&] { return command.state() == QProcess::NotRunning; }));
        said = command.readAll();
        return command.exitStatus() == QProcess::NormalExit ? command.exitCode() : -1;
    }

    EventLoop loop;
    PrivateBus bus;
    BusApplicationInstance first { bus.connect(), {} };
    std::vector<Request> requests;
    Registration observation = first.observeRequests([this](Request const& request, auto const& answer) {
        requests.push_back(request);
        answer(request.sheet == u"Git" ? ApplicationInstance::Outcome() : std::unexpected(u"No such sheet."_s));
    });
    QByteArray said;
};

TEST_F(CommandTest, Every_option_for_the_running_program_reaches_it_and_the_answer_comes_back)
{
    auto const held = ModifierFlags::control | ModifierFlags::option;
    struct Case {
        QStringList arguments;
        Request request;
        int exitCode = 0;
        char const* sentence = "";
    };
    for (auto const& [arguments, request, exitCode, sentence] : std::initializer_list<Case> {
             { {}, {} },
             { { u"--toggle"_s }, { .wish = Wish::toggle } },
             { { u"--open"_s }, {} },
             { { u"--peek"_s }, { .wish = Wish::peek } },
             { { u"--peek"_s, u"--held"_s, u"ctrl+Alt"_s }, { .wish = Wish::peek, .held = held } },
             { { u"--peek"_s, u"--held=option+control"_s }, { .wish = Wish::peek, .held = held } },
             { { u"--peek-end"_s }, { .wish = Wish::peekEnd } },
             { { u"--settings"_s }, { .wish = Wish::settings } },
             { { u"--show"_s, u"Git"_s }, { .wish = Wish::show, .sheet = u"Git"_s } },
             { { u"--show=Zoë"_s }, { .wish = Wish::show, .sheet = u"Zoë"_s }, 1, "quillory: No such sheet.\n" },
         }) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());
        requests.clear();
        EXPECT_EQ(run(arguments), exitCode);
        EXPECT_EQ(said, sentence);
        auto expected = request;
        expected.userTime = 77;
        EXPECT_THAT(requests, ElementsAre(expected));
    }
}

TEST_F(CommandTest, What_needs_no_request_makes_none)
{
    requests.clear();
    EXPECT_EQ(run({ u"--background"_s }), 0);
    EXPECT_EQ(run({ u"--peek"_s, u"--held"_s, u"hyper"_s }), 2);
    EXPECT_THAT(said.toStdString(), HasSubstr("hyper"));
    EXPECT_EQ(run({ u"--peek"_s, u"--toggle"_s }), 2);
    EXPECT_EQ(run({ u"--version"_s }), 0);
    EXPECT_TRUE(said.startsWith("quillory "));
    first.leave();
    EXPECT_EQ(run({ u"--peek-end"_s }), 0) << "there is nothing to end";
    EXPECT_EQ(run({ u"--show"_s, u"Git"_s }), 1) << "the program is started";
    EXPECT_THAT(said.toStdString(), HasSubstr("display"));
    EXPECT_THAT(requests, IsEmpty());
}

}
}
