#include "rendering/MarkdownRenderer.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Family = FontAttribute::Family;
using Weight = FontAttribute::Weight;

constexpr double size = 16;
constexpr FontAttribute body { .size = size };
constexpr FontAttribute bold { .size = size, .weight = Weight::bold };
constexpr FontAttribute italic { .size = size, .italic = true };
constexpr FontAttribute code { .family = Family::monospaced, .size = size };

RenderedMarkdown render(QString const& source, MarkdownRenderer::Images const& images = {})
{
    return MarkdownRenderer::render(source, u"Title"_s, images, size);
}

// The attributes and the paragraph style of the first place where `part` stands.
struct Place {
    Place(RenderedMarkdown const& rendered, QString const& part)
        : location(rendered.text.string().indexOf(part))
    {
        EXPECT_GE(location, 0) << part.toStdString();
        auto const& text = rendered.text;
        attributes = text.attributes(text.runs()[static_cast<std::size_t>(text.runAt(location))]);
        style = text.paragraphStyle(text.paragraphRuns()[static_cast<std::size_t>(text.paragraphRunAt(location))]);
    }

    qsizetype location;
    TextAttributes attributes;
    ParagraphStyle style;
};

TEST(MarkdownRenderer, Every_kind_of_node_has_its_text)
{
    struct Case {
        QString source;
        QString text;
    };
    Case const cases[] {
        { u""_s, u""_s },
        { u"a\nb\\\nc"_s, u"a\nb\nc\n\n"_s },
        { u"## H\n\ntext"_s, u"H\ntext\n\n"_s },
        { u"- a\n- [x] b\n- [ ] c\n  1. d"_s, u"• a\n\n☑ b\n\n☐ c\n\n• d\n\n"_s },
        { u"> a\n>\n> b"_s, u"│ a\n\nb\n\n"_s },
        { u"a\n\n---\n\nb"_s, u"a\n\n────────────────────────\n\nb\n\n"_s },
        { u"<!-- c -->\n\na <b>c</b>"_s, u"<!-- c -->\n\na <b>c</b>\n\n"_s },
        { u"![alt *text*](x.png) ![](y.png)"_s, u"[Image unavailable: alt text] [Image unavailable: ]\n\n"_s },
        { u"|a|b|\n|-|-|\n|c|"_s, u"a\nb\nc\n\n\n"_s },
        { u"*a* **b** ~~c~~ `d` [e](f)"_s, u"a b c d e\n\n"_s },
    };
    for (auto const& [source, text] : cases)
        EXPECT_EQ(render(source).text.string(), text) << source.toStdString();
}

TEST(MarkdownRenderer, The_title_is_left_out_only_where_the_window_shows_it)
{
    EXPECT_EQ(render(u"# Title"_s).text, AttributedText());
    for (auto const& drawn : { u"# title"_s, u"## Title"_s, u"# Title!"_s, u"a\n\n# Title"_s, u"# Title\n\n# Title"_s })
        EXPECT_FALSE(render(drawn).text.isEmpty()) << drawn.toStdString();
}

TEST(MarkdownRenderer, A_font_replaces_the_one_around_it)
{
    auto const rendered = render(u"# A **b** `c`\n\n### D\n\nplain **bold *both*** ~~gone~~"_s);
    struct Case {
        QString part;
        FontAttribute font;
        double spacing;
    };
    FontAttribute const title { .size = size + 4, .weight = Weight::semibold };
    FontAttribute const heading { .size = size, .weight = Weight::semibold };
    for (auto const& [part, font, spacing] :
        { Case { u"A"_s, title, 6 }, Case { u"b"_s, bold, 6 }, Case { u"c"_s, code, 6 }, Case { u"D"_s, heading, 6 },
            Case { u"plain"_s, body, 0 }, Case { u"bold"_s, bold, 0 }, Case { u"both"_s, italic, 0 } }) {
        Place const place(rendered, part);
        EXPECT_EQ(place.attributes.font, font) << part.toStdString();
        EXPECT_EQ(place.style, (ParagraphStyle { .paragraphSpacing = spacing })) << part.toStdString();
    }
    EXPECT_TRUE(Place(rendered, u"gone"_s).attributes.strikethrough);
    EXPECT_EQ(Place(render(u"> q"_s), u"│"_s).attributes.color, Color { ColorRole::secondaryLabel });
}

TEST(MarkdownRenderer, Code_can_be_copied_as_it_was_written)
{
    auto const rendered = render(
        u"## `a` `\U0001F600b`\n\n```\none\n\ntwo\n```\n\n- `c`\n\n    indented\n\n|`d`|\n|-|\n\n```\n```"_s);
    struct Target {
        QString text;
        QString shown;
        bool isBlock;
        bool operator==(Target const&) const = default;
    };
    std::vector<Target> targets;
    for (auto const& target : rendered.copyTargets) {
        targets.push_back(
            { target.text, rendered.text.string().sliced(target.range.location, target.range.length), target.isBlock });
        EXPECT_EQ(target.accessibilityLabel, std::nullopt);
    }
    EXPECT_THAT(targets,
        ElementsAre(Target { u"a"_s, u"a"_s, false }, Target { u"\U0001F600b"_s, u"\U0001F600b"_s, false },
            Target { u"one\n\ntwo\n"_s, u"one\n\ntwo"_s, true }, Target { u"c"_s, u"c"_s, false },
            Target { u"d"_s, u"d"_s, false }, Target { u""_s, u" "_s, true }));
    EXPECT_EQ(rendered.copyTargets[1].range.length, 3);
    EXPECT_EQ(Place(rendered, u"a"_s).attributes.background, (Color { ColorRole::quaternaryLabel, 0.12 }));
}

TEST(MarkdownRenderer, A_code_block_is_spaced_at_its_first_and_last_line)
{
    auto const rendered = render(u"```\nfirst\nmiddle\nlast\n```\n\n    alone"_s);
    auto const line = [](double before, double after) {
        return ParagraphStyle { .firstLineHeadIndent = 8,
            .headIndent = 8,
            .tailIndent = -64,
            .minimumLineHeight = size + 4,
            .paragraphSpacingBefore = before,
            .paragraphSpacing = after };
    };
    EXPECT_EQ(Place(rendered, u"first"_s).style, line(8, 0));
    EXPECT_EQ(Place(rendered, u"middle"_s).style, line(0, 0));
    EXPECT_EQ(Place(rendered, u"last"_s).style, line(0, 20));
    EXPECT_EQ(Place(rendered, u"alone"_s).style, line(8, 20));
    EXPECT_EQ(rendered.text.string(), u"first\nmiddle\nlast\nalone\n"_s);
}

TEST(MarkdownRenderer, Only_web_addresses_are_links)
{
    struct Case {
        QString destination;
        QString link;
    };
    for (auto const& [destination, link] :
        { Case { u"https://a.org/x"_s, u"https://a.org/x"_s }, Case { u"HTTP://a.org"_s, u"http://a.org"_s },
            Case { u"mailto:a@b.org"_s, {} }, Case { u"file:///etc/x"_s, {} }, Case { u"javascript:x"_s, {} },
            Case { u"#part"_s, {} }, Case { u""_s, {} } }) {
        EXPECT_EQ(Place(render(u"[word](<%1>)"_s.arg(destination)), u"word"_s).attributes.link, link)
            << destination.toStdString();
    }
}

TEST(MarkdownRenderer, Cells_know_their_place_and_the_head_is_marked)
{
    auto const rendered = render(u"|h1|h2|\n|-|-|\n|c1|c2|\n\nbetween\n\n|k1|\n|-|"_s);
    auto const block = [&](QString const& part) { return Place(rendered, part).style.block.value(); };
    TableBlock const head { .table = 0,
        .columns = 2,
        .row = 0,
        .column = 1,
        .padding = 5,
        .borderWidth = 0.5,
        .borderColor = { ColorRole::separator },
        .background = Color { ColorRole::quaternaryLabel, 0.12 } };
    EXPECT_EQ(block(u"h2"_s), head);
    EXPECT_EQ(Place(rendered, u"h2"_s).attributes.font, bold);
    auto cell = head;
    cell.row = 1;
    cell.background.reset();
    EXPECT_EQ(block(u"c2"_s), cell);
    EXPECT_EQ(Place(rendered, u"c2"_s).attributes.font, body);
    EXPECT_EQ(block(u"k1"_s).table, 1);
    EXPECT_EQ(Place(rendered, u"between"_s).style.block, std::nullopt);
}

TEST(MarkdownRenderer, A_picture_is_at_most_360_wide_and_never_enlarged)
{
    for (auto const& [pixels, drawn] :
        { std::pair(QSize(720, 100), QSizeF(360, 50)), std::pair(QSize(200, 300), QSizeF(200, 300)) }) {
        auto const rendered = render(u"![x](a.png)"_s, { { u"a.png"_s, { QImage(pixels, QImage::Format_RGB32), 7 } } });
        auto const attachment = Place(rendered, u"\uFFFC"_s).attributes.attachment;
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
