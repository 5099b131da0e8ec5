#include "rendering/MarkdownRenderer.h"

#include "support/Test.h"

namespace Quillory {
namespace {

RenderedMarkdown render(QString const& source)
{
    return MarkdownRenderer::render(source, u"Title"_s, {}, 16);
}

TEST(MarkdownRenderer, The_title_is_left_out_only_where_the_window_shows_it)
{
    EXPECT_EQ(render(u"# Title"_s).text, AttributedText());
    for (auto const& drawn : { u"# title"_s, u"## Title"_s, u"# Title!"_s, u"a\n\n# Title"_s, u"# Title\n\n# Title"_s })
        EXPECT_FALSE(render(drawn).text.isEmpty()) << drawn.toStdString();
}

TEST(MarkdownRenderer, A_beginning_is_what_the_whole_begins_with_and_ends_in_no_table)
{
    auto const parsed = ParsedMarkdown::parsing(
        u"`a` [b](http://b)\n```\nc\n```\n|d|`e`|\n|-|-|\n|f|g|\n\n> - **h** `i`"_s);
    auto const whole = MarkdownRenderer::render(parsed, {}, {}, 16);
    auto const table = whole.text.string().indexOf(u"d\ne\nf\ng\n\n"_s);
    for (qsizetype characters = 0; characters <= whole.text.length(); ++characters) {
        auto const [rendered, isWhole] = MarkdownRenderer::renderBeginning(parsed, {}, {}, 16, characters);
        auto const length = rendered.text.length();
        EXPECT_GE(length, characters);
        EXPECT_EQ(rendered.text.string(), whole.text.string().first(length));
        EXPECT_FALSE(length > table && length < table + 9) << characters;
        EXPECT_TRUE(std::equal(rendered.copyTargets.begin(), rendered.copyTargets.end(), whole.copyTargets.begin()));
        EXPECT_TRUE(!isWhole || rendered == whole) << characters;
    }
}

TEST(MarkdownRenderer, A_sheet_nested_deeper_than_the_stack_renders)
{
    auto const text = render(QString(200'000, u'>') + u"deep"_s).text.string();
    EXPECT_EQ(text, u"│ "_s.repeated(200'000) + u"deep\n\n"_s);
}

}
}
