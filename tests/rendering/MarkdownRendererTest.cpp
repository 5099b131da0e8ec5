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

TEST(MarkdownRenderer, A_sheet_nested_deeper_than_the_stack_renders)
{
    auto const text = render(QString(200'000, u'>') + u"deep"_s).text.string();
    EXPECT_EQ(text, u"│ "_s.repeated(200'000) + u"deep\n\n"_s);
}

}
}
