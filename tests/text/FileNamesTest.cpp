#include "text/FileNames.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

TEST(FileNames, A_name_that_is_no_utf8_is_written_out_and_stays_distinct)
{
    struct Case {
        QByteArray bytes;
        QString text;
        bool isUtf8;
    };
    Case const cases[] {
        { "keys.md", u"keys.md"_s, true },
        { "cl\xC3\xA9.md", u"clé.md"_s, true },
        { "50%.md", u"50%.md"_s, true },
        { "cl\xE9.md", u"cl%E9.md"_s, false },
        { "\xFF%FE", u"%FF%25FE"_s, false },
        { "%FF\xFE", u"%25FF%FE"_s, false },
        { "\xC3\xA9\xED\xA0\x80", u"é%ED%A0%80"_s, false },
        { "\xF0\x9F\x98\x80\xF0\x9F", u"\U0001F600%F0%9F"_s, false },
    };
    for (auto const& [bytes, text, isUtf8] : cases) {
        auto const name = FileName::fromBytes(bytes);
        EXPECT_EQ(name.text, text) << text.toStdString();
        EXPECT_EQ(name.isUtf8, isUtf8) << text.toStdString();
    }
}

TEST(FileNames, The_last_extension_alone_is_split_off)
{
    struct Case {
        QString name, stem, extension;
    };
    Case const cases[] {
        { u"keys.md"_s, u"keys"_s, u"md"_s },
        { u"keys.quillory.json"_s, u"keys.quillory"_s, u"json"_s },
        { u"keys"_s, u"keys"_s, {} },
        { u"keys."_s, u"keys"_s, {} },
        { u".md"_s, u".md"_s, {} },
        { {}, {}, {} },
    };
    for (auto const& [name, stem, extension] : cases) {
        EXPECT_EQ(pathStem(name), stem) << name.toStdString();
        EXPECT_EQ(pathExtension(name), extension) << name.toStdString();
    }
}

}
}
