#include "e2e/ReaderOnADesktop.h"
#include "rendering/ReaderColors.h"

namespace Quillory {
namespace {

// The first row that shows the ground of a code block, which nothing else has so much of; -1 when there is none.
int topOfBlock(QImage const& picture)
{
    constexpr int mostElsewhere = 200; // pixels
    auto const isGround = [](QRgb pixel) {
        return pixel == ReaderColors::codeBackground.light || pixel == ReaderColors::codeBackground.dark;
    };
    for (int y = 0; y < picture.height(); ++y) {
        int pixels = 0;
        for (int x = 0; x < picture.width(); ++x)
            pixels += isGround(picture.pixel(x, y) | 0xFF000000) ? 1 : 0;
        if (pixels > mostElsewhere)
            return y;
    }
    return -1;
}

using ReaderTest = ReaderOnADesktop;

TEST_F(ReaderTest, It_comes_up_over_the_terminal_and_follows_what_is_saved)
{
    int top = -1;
    auto const showsBlockBelow = [&](int least) {
        return Desktop::eventually([&] { return (top = topOfBlock(desktop.picture())) > least; });
    };
    program.save(u"b.md"_s, sheetOf("Second"));
    program.save(u"a.md"_s, "# Short\n");
    start();
    ASSERT_FALSE(desktop.isReaderOnScreen()) << "there must be no window before it is called";

    ASSERT_TRUE(comesUp());
    EXPECT_TRUE(shows(u"Short"_s));
    EXPECT_EQ(topOfBlock(desktop.picture()), -1);
    EXPECT_EQ(desktop.topmostWindow(), desktop.reader().value().window);

    program.save(u"a.md"_s, sheetOf("Longer"));
    EXPECT_TRUE(shows(u"Longer"_s));
    EXPECT_TRUE(showsBlockBelow(0));

    program.save(u"a.md"_s, "# Broken \xC3\x28\n");
    EXPECT_TRUE(showsBlockBelow(top)) << "an error line pushes the last readable text down";
    EXPECT_TRUE(shows(u"Longer"_s));

    program.save(u"a.md"_s, "# Mended\n");
    EXPECT_TRUE(shows(u"Mended"_s));
    program.remove(u"a.md"_s);
    EXPECT_TRUE(shows(u"Second"_s)) << "the selection moves on from a sheet that is gone";
}

TEST_F(ReaderTest, Nothing_is_prepared_for_a_start_beside_one_that_runs)
{
    start();
    auto const before = program.storedSettings();
    EXPECT_EQ(program.startAgain({ u"--connect"_s, program.path({}) }), 1);
    EXPECT_THAT(program.said(), HasSubstr("already runs"));
    EXPECT_NE(program.startAgain({}, QStringLiteral(QUILLORY_SOURCE "/run")), 0);
    EXPECT_THAT(program.said(), HasSubstr("already runs as process " + std::to_string(program.process())));
    EXPECT_EQ(program.storedSettings(), before);
}

}
}
