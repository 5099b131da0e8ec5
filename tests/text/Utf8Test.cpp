#include "support/Dice.h"
#include "support/Test.h"
#include "text/FileNames.h"
#include "text/StrictUtf8.h"

#include <QStringDecoder>

namespace Quillory {
namespace {

// What an independent decoder makes of the bytes; absent where it finds a fault.
std::optional<QString> decoded(QByteArray const& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    text += decoder("a"); // which a truncated tail does not survive
    if (decoder.hasError())
        return std::nullopt;
    return text.chopped(1);
}

TEST(StrictUtf8, Whatever_the_bytes_they_are_a_text_only_where_an_independent_decoder_finds_no_fault)
{
    QByteArrayList const pieces { "a", "\r\n", QByteArray("\0", 1), "\xC3\xA9", "\xEF\xBB\xBF", "\xEF\xBF\xBD",
        "\xEF\xBF\xBE", "\xED\x9F\xBF", "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", QByteArray(100, 'b') };
    QByteArrayList const faults { "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x80\x80",
        "\xE0\x9F\xBF", "\xE2\x82", "\xE2\x82(", "\xED\xA0\x80", "\xED\xBF\xBF", "\xED\xA0\xBD\xED\xB8\x80",
        "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
        "\xF8\x88\x80\x80\x80", "\xFE", "\xFF", "\xEF\xBB" };
    Dice dice(3);
    int texts = 0;
    for (int round = 0; round < 20'000; ++round) {
        QByteArray bytes;
        for (auto count = dice.below(6); count > 0; --count)
            bytes += dice.anyOf(pieces);
        auto const fault = round % 2 ? QByteArray() : dice.anyOf(faults);
        bytes.insert(dice.below(bytes.size() + 1), fault);
        auto const text = decoded(bytes);
        ASSERT_EQ(decodeStrictUtf8(bytes), text) << bytes.toHex().toStdString();
        ASSERT_EQ(isStrictUtf8Of(bytes, text.value_or(QString::fromUtf8(bytes))), text.has_value());
        if (text && !bytes.isEmpty()) {
            auto const at = dice.below(bytes.size());
            ASSERT_FALSE(isStrictUtf8Of(bytes.first(at), *text)) << at;
            ASSERT_FALSE(isStrictUtf8Of(bytes, *text + u'a'));
            bytes[at] = static_cast<char>(bytes[at] ^ 1);
            ASSERT_FALSE(isStrictUtf8Of(bytes, *text)) << at;
        }
        texts += text ? 1 : 0;
    }
    EXPECT_THAT(texts, AllOf(Gt(5'000), Lt(15'000)));
}

TEST(FileNames, A_name_that_is_no_utf8_is_written_out_and_stays_distinct)
{
    for (auto const& [bytes, text, isUtf8] : std::initializer_list<std::tuple<QByteArray, QString, bool>> {
             { "keys.md", u"keys.md"_s, true }, { "cl\xC3\xA9.md", u"clé.md"_s, true }, { "50%.md", u"50%.md"_s, true },
             { "cl\xE9.md", u"cl%E9.md"_s, false }, { "\xFF%FE", u"%FF%25FE"_s, false },
             { "%FF\xFE", u"%25FF%FE"_s, false }, { "\xC3\xA9\xED\xA0\x80", u"é%ED%A0%80"_s, false },
             { "\xF0\x9F\x98\x80\xF0\x9F", u"\U0001F600%F0%9F"_s, false } }) {
        auto const name = FileName::fromBytes(bytes);
        EXPECT_EQ(name.text, text);
        EXPECT_EQ(name.isUtf8, isUtf8) << text.toStdString();
    }
}

TEST(FileNames, The_last_extension_alone_is_split_off)
{
    for (auto const& [name, stem, extension] : std::initializer_list<std::tuple<QString, QString, QString>> {
             { u"keys.md"_s, u"keys"_s, u"md"_s }, { u"keys.quillory.json"_s, u"keys.quillory"_s, u"json"_s },
             { u"keys"_s, u"keys"_s, {} }, { u"keys."_s, u"keys"_s, {} }, { u".md"_s, u".md"_s, {} }, {} }) {
        EXPECT_EQ(pathStem(name), stem) << name.toStdString();
        EXPECT_EQ(pathExtension(name), extension) << name.toStdString();
    }
}

}
}
