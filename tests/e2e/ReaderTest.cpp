#include "e2e/ReaderOnADesktop.h"
#include "rendering/ReaderColors.h"

#include <gmock/gmock.h>

using namespace Quillory;
using namespace Qt::StringLiterals;

namespace {

// Where a picture has the ground of a code block, which nothing else in it has.
struct CodeGround {
    int pixels = 0;
    int top = -1;

    // More than inline code and antialiasing could have.
    bool isBlock() const { return pixels > 2000; }
};

CodeGround codeGround(QImage const& picture)
{
    CodeGround ground;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            auto const pixel = picture.pixel(x, y) | 0xFF000000;
            if (pixel != ReaderColors::codeBackground.light && pixel != ReaderColors::codeBackground.dark)
                continue;
            ++ground.pixels;
            ground.top = ground.top < 0 ? y : ground.top;
        }
    }
    return ground;
}

class ReaderTest : public ReaderOnADesktop {
protected:
    testing::AssertionResult showsACodeBlock()
    {
        CodeGround seen;
        auto const isShown = [&] {
            seen = codeGround(desktop.picture());
            return seen.isBlock();
        };
        if (Desktop::eventually(isShown))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "only " << seen.pixels << " pixels are the ground of a code block";
    }
};

TEST_F(ReaderTest, It_comes_up_over_the_terminal_with_the_first_sheet_painted)
{
    program.save(u"b.md"_s, sheetOf("Second"));
    program.save(u"a.md"_s, sheetOf("First"));
    start();
    ASSERT_FALSE(desktop.isReaderOnScreen()) << "there must be no window before it is called";

    ASSERT_TRUE(comesUp());
    EXPECT_TRUE(shows(u"First"_s));
    EXPECT_TRUE(showsACodeBlock());
    EXPECT_EQ(desktop.topmostWindow(), desktop.reader().value().window);
}

TEST_F(ReaderTest, A_saved_change_is_followed_while_it_is_up)
{
    program.save(u"a.md"_s, "# Short\n");
    start();
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(shows(u"Short"_s));
    ASSERT_FALSE(codeGround(desktop.picture()).isBlock());

    program.save(u"a.md"_s, sheetOf("Longer"));
    EXPECT_TRUE(shows(u"Longer"_s));
    EXPECT_TRUE(showsACodeBlock());

    program.save(u"b.md"_s, "# Other\n");
    program.remove(u"a.md"_s);
    EXPECT_TRUE(shows(u"Other"_s)) << "the selection moves on from a sheet that is gone";
}

TEST_F(ReaderTest, The_last_readable_version_stays_while_the_file_is_no_text)
{
    program.save(u"a.md"_s, sheetOf("Readable"));
    start();
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(shows(u"Readable"_s));
    ASSERT_TRUE(showsACodeBlock());
    auto const before = codeGround(desktop.picture());

    program.save(u"a.md"_s, "# Broken \xC3\x28\n");
    EXPECT_TRUE(Desktop::eventually([&] {
        auto const now = codeGround(desktop.picture());
        return now.isBlock() && now.top > before.top;
    })) << "an error line pushes the old text down";
    EXPECT_TRUE(shows(u"Readable"_s));

    program.save(u"a.md"_s, "# Mended\n");
    EXPECT_TRUE(shows(u"Mended"_s));
}

TEST_F(ReaderTest, The_keyboard_goes_back_to_the_very_window_that_had_it)
{
    program.save(u"a.md"_s, sheetOf("Sheet"));
    Terminal const second(desktop, program.path(u"second"_s));
    start();
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(goesAwayTo(second.window()));

    // Of two windows of one program it is not the one on top that counts.
    desktop.activate(terminal.window());
    ASSERT_TRUE(Desktop::eventually([&] { return desktop.frontWindow() == terminal.window(); }));
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(goesAwayTo(terminal.window()));
    desktop.play(u"K Return"_s);
    EXPECT_TRUE(Desktop::eventually([&] { return !terminal.typedLines().isEmpty(); }));
    EXPECT_EQ(terminal.typedLines(), "k\n");
    EXPECT_EQ(second.typedLines(), "");
}

TEST_F(ReaderTest, Without_a_folder_it_comes_up_by_itself)
{
    program.setHasFolder(false);
    start();
    EXPECT_TRUE(shows(u"Quillory"_s));
    EXPECT_TRUE(goesAwayTo(terminal.window()));
}

TEST_F(ReaderTest, A_termination_signal_ends_it_in_order_with_its_settings_written)
{
    program.save(u"a.md"_s, sheetOf("Sheet"));
    program.setSetting(u"somebodyElses"_s, u"untouched"_s);
    start();
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(shows(u"Sheet"_s));
    EXPECT_TRUE(program.terminate());

    auto const settings = program.storedSettings();
    EXPECT_EQ(settings[u"lastSheet"].toString(), u"a.md"_s);
    EXPECT_EQ(settings[u"somebodyElses"].toString(), u"untouched"_s);
    EXPECT_EQ(Shortcut::decode(settings[u"KeyboardShortcuts_toggleQuillory"].toString()), toggle);
    EXPECT_TRUE(settings[u"libraryBookmark"].isObject());
    EXPECT_TRUE(Desktop::eventually([&] { return desktop.frontWindow() == terminal.window(); }));
}

TEST_F(ReaderTest, Run_refuses_to_prepare_a_start_beside_it)
{
    start();
    QProcess run;
    run.setProcessEnvironment(program.environment());
    run.start(QStringLiteral(QUILLORY_SOURCE "/run"), QStringList());
    ASSERT_TRUE(run.waitForFinished());
    EXPECT_NE(run.exitCode(), 0);
    EXPECT_THAT(run.readAllStandardError().toStdString(),
        testing::HasSubstr("already runs as process " + std::to_string(program.process())));
}

}
