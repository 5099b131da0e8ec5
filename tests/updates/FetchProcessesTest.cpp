#include "linux/fetch/FetchProcesses.h"
#include "support/EventLoop.h"
#include "support/LoopbackServer.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

#include <functional>
#include <optional>

namespace Quillory {
namespace {

TEST(FetchProcesses, Pass_on_what_comes_and_hold_it_against_the_request)
{
    using enum Downloads::Fault;
    EventLoop loop;
    LoopbackServer server;
    auto const large = QByteArray("bytes ").repeated(500'000);
    auto const program = QStringLiteral(QUILLORY_FETCH);
    server.serve("/large", large);
    server.redirect("/moved", "/large");
    server.redirect("/astray", "/forbidden");
    server.answers["/stalls"] = { LoopbackServer::answer("200 OK", large).chopped(9), false };
    struct Row {
        QString path, program;
        std::optional<Downloads::Fault> fault;
        qint64 mostBytes = 4'000'000;
        qsizetype wanted = 4'000'000;
    };
    for (auto const& row : {
             Row { u"/large"_s, program, {} }, Row { u"/moved"_s, program, {} }, Row { u"/astray"_s, program, refused },
             Row { u"/none"_s, program, missing }, Row { u"/large"_s, program, tooLarge, 2'999'999 },
             Row { u"/large"_s, program, unwanted, 4'000'000, 10 }, Row { u"/stalls"_s, program, timedOut },
             Row { u"/large"_s, u"no-such-program"_s, interrupted },
             Row { u"/large"_s, u"true"_s, interrupted }, // ends without a word
             Row { u"/large"_s, u"yes"_s, interrupted },  // never ends, and says nothing that is understood
         }) {
        SCOPED_TRACE((row.path + u' ' + row.program).toStdString());
        ManualExecutor executor;
        FetchProcesses downloads(executor, row.program);
        QByteArray received;
        std::optional<std::expected<void, Downloads::Fault>> told;
        auto const download = downloads.start(
            { server.address(row.path), [](QUrl const& to) { return to.path() == u"/large"; }, row.mostBytes, 30s, 1h },
            [&](QByteArray const& bytes) {
                received += bytes;
                return received.size() <= row.wanted;
            },
            [&](auto const& result) { told = result; });
        EXPECT_TRUE(loop.runUntil([&] {
            if (row.fault == timedOut && received.size() == large.size() - 9)
                executor.advance(30s);
            executor.runPosted();
            return told.has_value();
        }));
        EXPECT_EQ(told->has_value() ? std::nullopt : std::optional(told->error()), row.fault);
        EXPECT_TRUE(row.fault || received == large);
    }
}

}
}
