#include "support/Cases.h"
#include "support/Dice.h"
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
    QByteArrayList const faults { "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x80\x80",
        "\xE0\x9F\xBF", "\xE2\x82", "\xE2\x82(", "\xED\xA0\x80", "\xED\xBF\xBF", "\xED\xA0\xBD\xED\xB8\x80",
        "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
        "\xF8\x88\x80\x80\x80", "\xFE", "\xFF", "\xEF\xBB" };
    Dice dice(3);
    int texts = 0;
    for (int round = 0; round < 20'000; ++round) {
        auto bytes = dice.mixture<QByteArray>(
            { "a", "\r\n", QByteArray("\0", 1), "\xC3\xA9", "\xEF\xBB\xBF", "\xEF\xBF\xBD", "\xEF\xBF\xBE",
                "\xED\x9F\xBF", "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", QByteArray(100, 'b') },
            6);
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
    forEachCase(u"file names"_s, [](auto const& row) {
        auto const name = FileName::fromBytes(bytesIn(row[0]));
        EXPECT_EQ(name.text, row[1].toString());
        EXPECT_EQ(name.isUtf8, row[2].toBool());
    });
}

}
}
