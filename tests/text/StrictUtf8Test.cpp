#include "text/StrictUtf8.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

TEST(StrictUtf8, Well_formed_text_comes_through_unchanged)
{
    struct Case {
        QByteArray bytes;
        QString text;
    };
    QChar const nul(0);
    Case const cases[] {
        { "", {} },
        { "a\r\nb", u"a\r\nb"_s },
        { QByteArray("a\0b", 3), u'a' + QString(nul) + u'b' },
        { "\xEF\xBB\xBF"
          "a",
            u"\uFEFFa"_s },
        { "\xEF\xBB\xBF", u"\uFEFF"_s },
        { "a\xEF\xBB\xBF", u"a\uFEFF"_s },
        { "\xEF\xBF\xBD", u"\uFFFD"_s },
        { "\xEF\xBF\xBE\xEF\xBF\xBF", QString(QChar(0xFFFE)) + QChar(0xFFFF) },
        { "\xED\x9F\xBF\xEE\x80\x80", QString(QChar(0xD7FF)) + QChar(0xE000) },
        { "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"_s },
    };
    for (auto const& [bytes, text] : cases) {
        auto const decoded = decodeStrictUtf8(bytes);
        ASSERT_TRUE(decoded) << bytes.toHex().toStdString();
        EXPECT_EQ(*decoded, text) << bytes.toHex().toStdString();
    }
}

TEST(StrictUtf8, Ill_formed_text_is_refused_wherever_it_stands)
{
    char const* const cases[] { "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x80\x80", "\xE0\x9F\xBF",
        "\xE2\x82", "\xE2\x82(", "\xED\xA0\x80", "\xED\xBF\xBF", "\xED\xA0\xBD\xED\xB8\x80", "\xF0\x80\x80\x80",
        "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFE",
        "\xFF", "\xEF\xBB" };
    QByteArray const surroundings[][2] { { "", "" }, { "abc", "" }, { "", "abc" }, { "\xEF\xBB\xBF", "" },
        { QByteArray(100, 'a'), QByteArray(100, 'b') }, { "\xEF\xBF\xBD", "\xEF\xBF\xBD" } };
    for (QByteArray const bytes : cases) {
        for (auto const& [before, after] : surroundings)
            EXPECT_FALSE(decodeStrictUtf8(before + bytes + after)) << (before + bytes + after).toHex().toStdString();
    }
}

TEST(StrictUtf8, Bytes_are_known_as_the_text_they_are_and_as_no_other)
{
    auto const filler = QString(70, u'x');
    QString const texts[] { {}, u"a"_s, filler, u"\uFEFF"_s + filler, filler + u"é"_s + filler, filler + u"\uFFFD"_s,
        u"日本語"_s + filler + u"\U0001F600"_s + filler, QString(QChar(0)) + filler };
    for (auto const& text : texts) {
        auto const bytes = text.toUtf8();
        EXPECT_TRUE(isStrictUtf8Of(bytes, text)) << bytes.toHex().toStdString();
        for (auto const& other : { text + u'a', u'a' + text, QString(text).replace(u"é"_s, u"e\u0301"_s) + u'\u0301' })
            EXPECT_FALSE(isStrictUtf8Of(bytes, other)) << other.toStdString();
        for (qsizetype changed = 0; changed < bytes.size(); ++changed) {
            auto broken = bytes;
            broken[changed] = static_cast<char>(broken[changed] ^ 1);
            EXPECT_FALSE(isStrictUtf8Of(broken, text)) << changed;
            EXPECT_FALSE(isStrictUtf8Of(bytes.first(changed), text)) << changed;
        }
    }
    EXPECT_FALSE(isStrictUtf8Of("\xFF", u"\uFFFD"));
    EXPECT_FALSE(isStrictUtf8Of("\xED\xA0\xBD", QString(QChar(0xD83D))));
    EXPECT_FALSE(isStrictUtf8Of(QByteArrayView("\xED\xA0\xBD\xED\xB8\x80"), u"\U0001F600"));
}

}
}
