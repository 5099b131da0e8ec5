#include "rendering/MarkdownRenderer.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;

RenderedMarkdown render(QString const& source, MarkdownRenderer::Images const& images = {})
{
    return MarkdownRenderer::render(source, u"Title"_s, images, 16);
}

TEST(MarkdownRenderer, The_title_is_left_out_only_where_the_window_shows_it)
{
    EXPECT_EQ(render(u"# Title"_s).text, AttributedText());
    for (auto const& drawn : { u"# title"_s, u"## Title"_s, u"# Title!"_s, u"a\n\n# Title"_s, u"# Title\n\n# Title"_s })
        EXPECT_FALSE(render(drawn).text.isEmpty()) << drawn.toStdString();
}

TEST(MarkdownRenderer, A_picture_is_at_most_360_wide_and_never_enlarged)
{
    for (auto const& [pixels, drawn] : { std::pair(QSize(720, 100), QSizeF(360, 50)),
             std::pair(QSize(200, 300), QSizeF(200, 300)), std::pair(QSize(1, 500), QSizeF(1, 500)) }) {
        auto const rendered = render(u"![x](a.png)"_s, { { u"a.png"_s, { QImage(pixels, QImage::Format_RGB32), 7 } } });
        auto const attachment = rendered.text.attributes(rendered.text.runs().front()).attachment;
        ASSERT_TRUE(attachment);
        EXPECT_EQ(QSizeF(attachment->width, attachment->height), drawn);
        EXPECT_EQ(rendered.text.string(), u"\uFFFC\n\n"_s);
    }
}

TEST(MarkdownRenderer, A_sheet_nested_deeper_than_the_stack_renders)
{
    auto const rendered = render(QString(200'000, u'>') + u"deep"_s);
    EXPECT_EQ(rendered.text.string().count(u"│ "_s), 200'000);
    EXPECT_TRUE(rendered.text.string().endsWith(u"deep\n\n"_s));
}

}
}
