#include "e2e/ReaderOnADesktop.h"

namespace Quillory {
namespace {

// A display that can be taken away, without a window manager.
class OwnDisplay {
public:
    OwnDisplay()
    {
        m_server.start(u"Xvfb"_s, { u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s });
        QByteArray number;
        while (!number.endsWith('\n')) {
            if (!m_server.waitForReadyRead())
                throw std::runtime_error("Xvfb does not start");
            number += m_server.readAllStandardOutput();
        }
        m_name = ':' + number.trimmed();
    }
    ~OwnDisplay() { take(); }
    OwnDisplay(OwnDisplay const&) = delete;
    OwnDisplay& operator=(OwnDisplay const&) = delete;

    QByteArray const& name() const { return m_name; }
    void take()
    {
        m_server.kill();
        m_server.waitForFinished();
    }

private:
    QProcess m_server;
    QByteArray m_name;
};

class EndingTest : public Test {
protected:
    using End = std::function<void(OwnDisplay&, Desktop&)>;

    // A sheet that keeps the worker busy for minutes, as a drive does that does not answer.
    void keepWorkerBusy()
    {
        program.save(u"z.md"_s, QByteArray(512 * 1024, '"'));
        EXPECT_TRUE(Desktop::eventually([&] { return program.openFiles().contains(program.folder()); }));
    }

    // Changes the selection, which is written a quarter of a second later. False when it was written before the end.
    bool writesAtItsEnd(End const& end, int exitCode)
    {
        OwnDisplay display;
        auto const usual = qgetenv("DISPLAY");
        qputenv("DISPLAY", display.name());
        Desktop desktop;
        qputenv("DISPLAY", usual);
        program.setDisplay(QString::fromLatin1(display.name()));
        program.start();
        EXPECT_TRUE(Desktop::eventually([&] { return desktop.isGrabbed(toggle); }));
        desktop.play(u"ctrl+alt+K"_s);
        EXPECT_TRUE(
            Desktop::eventually([&] { return desktop.reader() && !program.openFiles().contains(program.folder()); }));
        keepWorkerBusy();
        EXPECT_TRUE(Desktop::eventually([&] {
            desktop.play(u"Right"_s);
            return desktop.reader() && desktop.reader()->title.startsWith(u"Second"_s);
        }));
        auto const before = program.storedSettings()[u"lastSheet"_s].toString();
        end(display, desktop);
        EXPECT_EQ(program.waitForEnd(), exitCode);
        EXPECT_EQ(program.storedSettings()[u"lastSheet"_s].toString(), u"b.md"_s);
        program.remove(u"z.md"_s);
        return before != u"b.md"_s;
    }

    EventLoop loop;
    Program program;
};

TEST_F(EndingTest, However_it_ends_it_writes_the_last_settings_and_waits_for_no_worker)
{
    program.save(u"a.md"_s, sheetOf("First"));
    program.save(u"b.md"_s, sheetOf("Second"));
    struct Case {
        char const* story;
        End end;
        int exitCode;
    };
    for (auto const& [story, end, exitCode] :
        std::initializer_list<Case> { { "display lost", [](OwnDisplay& display, Desktop&) { display.take(); }, 1 },
            { "SIGTERM", [&](OwnDisplay&, Desktop&) { kill(static_cast<pid_t>(program.process()), SIGTERM); }, 0 },
            { "Ctrl+Q", [](OwnDisplay&, Desktop& desktop) { desktop.play(u"ctrl+Q"_s); }, 0 } }) {
        SCOPED_TRACE(story);
        bool isProven = false;
        for (int attempt = 0; attempt < 5 && !isProven; ++attempt)
            isProven = writesAtItsEnd(end, exitCode);
        EXPECT_TRUE(isProven);
    }
}

}
}
