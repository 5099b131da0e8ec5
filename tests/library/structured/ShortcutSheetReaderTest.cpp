#include "SheetJson.h"
#include "library/ShortcutSheet.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

TEST(ShortcutSheetReader, Every_field_arrives_as_written)
{
    auto const sheet = ShortcutSheet::decode(R"({"icon":"icons/a.png","future":{"deep":[1,{"x":null}]},"sections":[
        {"id":"edit","title":" Edit ","description":"","icon":"icons/b.png","entries":[
            {"id":"copy","title":"Copy","text":"Takes\r\nit","shortcuts":[
                {"steps":[{"modifiers":["shift","command"],"key":"p"},{"modifiers":[],"key":"\u0065"}]},
                {"steps":[{"key":"space","modifiers":["function"]}]}]},
            {"id":"none","title":"None","text":null,"shortcuts":[]}]},
        {"id":"empty","title":"Empty","entries":[]}],
        "description":"All \"keys\" \ud83d\ude00","title":"Editor","schemaVersion":1})");
    ASSERT_TRUE(sheet) << sheet.error().message.toStdString();

    ShortcutSheet expected;
    expected.schemaVersion = 1;
    expected.title = u"Editor"_s;
    expected.description = u"All \"keys\" \U0001F600"_s;
    expected.icon = u"icons/a.png"_s;
    expected.sections = {
        { u"edit"_s, u" Edit "_s, u""_s,
            { { u"copy"_s, u"Copy"_s, u"Takes\r\nit"_s,
                  { { { { { u"shift"_s, u"command"_s }, u"p"_s }, { {}, u"e"_s } } },
                      { { { { u"function"_s }, u"space"_s } } } } },
                { u"none"_s, u"None"_s, std::nullopt, {} } },
            u"icons/b.png"_s },
        { u"empty"_s, u"Empty"_s, std::nullopt, {}, std::nullopt },
    };
    EXPECT_EQ(*sheet, expected);
    EXPECT_EQ(sheet->icons(), (QStringList { u"icons/a.png"_s, u"icons/b.png"_s }));
    expected.sections[0].entries[0].shortcuts[0].steps[1].modifiers.append(u"shift"_s);
    EXPECT_FALSE(*sheet == expected);
}

TEST(ShortcutSheetReader, A_failure_names_its_place)
{
    auto const step = [](QByteArray const& json) {
        return sheetWithEntry({ .shortcuts = { shortcutJson({ StepJson {}, json }) } });
    };
    expectMessages({
        { "no object", "[]", "document: expected an object but found an array" },
        { "null", "null", "document: expected an object but found null" },
        { "a bare string", "\"x\"", "document: expected an object but found a string" },
        { "an empty object", "{}", ".schemaVersion: the required key is missing" },
        { "a missing title", R"({"schemaVersion":1,"sections":[]})", ".title: the required key is missing" },
        { "a null title", R"({"schemaVersion":1,"title":null,"sections":[]})",
            "title: expected a string but found null" },
        { "a number as text", R"({"schemaVersion":1,"title":5,"sections":[]})",
            "title: expected a string but found a number" },
        { "a wrong optional text", SheetJson { .more = R"(,"description":[])" },
            "description: expected a string but found an array" },
        { "a wrong icon", SheetJson { .more = R"(,"icon":false)" }, "icon: expected a string but found a boolean" },
        { "null sections", R"({"schemaVersion":1,"title":"x","sections":null})",
            "sections: expected an array but found null" },
        { "a section that is none", SheetJson { .sections = { SectionJson {}, "7" } },
            "sections.1: expected an object but found a number" },
        { "a section without title", SheetJson { .sections = { R"({"id":"x","entries":[]})" } },
            "sections.0.title: the required key is missing" },
        { "an entry without shortcuts",
            SheetJson { .sections = { SectionJson { .entries = { R"({"id":"x","title":"x"})" } } } },
            "sections.0.entries.0.shortcuts: the required key is missing" },
        { "a shortcut without steps", sheetWithEntry({ .shortcuts = { "{}" } }),
            "sections.0.entries.0.shortcuts.0.steps: the required key is missing" },
        { "a step without modifiers", step(R"({"key":"k"})"),
            "sections.0.entries.0.shortcuts.0.steps.1.modifiers: the required key is missing" },
        { "a step with null modifiers", step(R"({"key":"k","modifiers":null})"),
            "sections.0.entries.0.shortcuts.0.steps.1.modifiers: expected an array but found null" },
        { "a step without key", step(R"({"modifiers":[]})"),
            "sections.0.entries.0.shortcuts.0.steps.1.key: the required key is missing" },
        { "a modifier that is no text", step(R"({"key":1,"modifiers":["shift",{"a":[]},"x"]})"),
            "sections.0.entries.0.shortcuts.0.steps.1.modifiers.1: expected a string but found an object" },
    });
}

TEST(ShortcutSheetReader, The_order_of_the_fields_decides_and_all_is_decoded_before_anything_is_judged)
{
    expectMessages({
        { "the file's order is another", R"({"icon":1,"sections":[{}],"title":2,"schemaVersion":1})",
            "title: expected a string but found a number" },
        { "sections before the icon", R"({"icon":1,"sections":[{}],"title":"","schemaVersion":1})",
            "sections.0.id: the required key is missing" },
        { "the first section counts", SheetJson { .sections = { R"({"id":"a","title":"a","entries":[{}]})", "{}" } },
            "sections.0.entries.0.id: the required key is missing" },
        { "the icon of a section after its entries",
            SheetJson { .sections = { R"({"icon":1,"id":"a","title":"a","entries":[5]})" } },
            "sections.0.entries.0: expected an object but found a number" },
        { "a limit is broken before a wrong type",
            SheetJson { .schemaVersion = "2", .title = "", .more = R"(,"icon":{})" },
            "icon: expected a string but found an object" },
    });
}

TEST(ShortcutSheetReader, The_last_of_equal_keys_counts)
{
    auto const tail = QByteArray(R"(,"sections":[{"id":"a","title":"a","entries":[]}]})");
    expectMessages({
        { "right after wrong",
            R"({"schemaVersion":"x","schemaVersion":1,"title":7,"title":"t","sections":[{},3])" + tail, "" },
        { "wrong after right", R"({"schemaVersion":1,"title":"t","title":null)" + tail,
            "title: expected a string but found null" },
        { "an escaped name is the same name", R"({"schemaVersion":1,"title":"t","\u0074itle":1)" + tail,
            "title: expected a string but found a number" },
    });
    auto const sheet = ShortcutSheet::decode(
        R"({"schemaVersion":1,"title":"a","title":"b","icon":"x","icon":null,"sections":[{"id":"z","title":"z","entries":[]}])"
        + tail);
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->title, u"b"_s);
    EXPECT_EQ(sheet->icon, std::nullopt);
    ASSERT_EQ(sheet->sections.size(), 1);
    EXPECT_EQ(sheet->sections[0].id, u"a"_s);
}

TEST(ShortcutSheetReader, A_number_is_an_integer_by_its_value)
{
    for (auto const* one : { "1", "1.0", "1e0", "10e-1", "0.1e1" })
        EXPECT_EQ(messageFor(SheetJson { .schemaVersion = one }), "") << one;
    auto const beyond = [](QByteArray const& number) {
        return MessageCase { number.toStdString(), SheetJson { .schemaVersion = number },
            "schemaVersion: the number " + number.toStdString() + " does not fit an integer" };
    };
    expectMessages({
        { "the largest", SheetJson { .schemaVersion = "9223372036854775807" },
            "schemaVersion: unsupported version; expected 1" },
        { "the smallest", SheetJson { .schemaVersion = "-9223372036854775808" },
            "schemaVersion: unsupported version; expected 1" },
        beyond("9223372036854775808"),
        beyond("18446744073709551615"),
        beyond("18446744073709551616"),
        beyond("-9223372036854777856"),
        beyond("9223372036854775808.0"),
        beyond("1e300"),
        { "a fraction", SheetJson { .schemaVersion = "1.5" },
            "schemaVersion: expected an integer but found the number 1.5" },
        { "a long fraction", SheetJson { .schemaVersion = "1.5" + QByteArray(1 << 20, '0') },
            "schemaVersion: expected an integer but found the number 1.5" + std::string(37, '0') + "…" },
        { "true", SheetJson { .schemaVersion = "true" }, "schemaVersion: expected an integer but found a boolean" },
        { "a digit as text", SheetJson { .schemaVersion = "\"1\"" },
            "schemaVersion: expected an integer but found a string" },
        { "no double", SheetJson { .schemaVersion = "1e400" }, "document: number out of range at line 1, column 22" },
    });
}

TEST(ShortcutSheetReader, What_is_no_json_is_told_by_line_and_column)
{
    QByteArray const good = SheetJson {};
    std::string const end = "unexpected end of input; expected '[', '{', or a literal";
    auto const at = [](qsizetype line, qsizetype column, std::string const& what) {
        return "document: not valid JSON at line " + std::to_string(line) + ", column " + std::to_string(column) + ": "
            + what;
    };
    expectMessages({
        { "nothing", "", at(1, 1, end) },
        { "blank", " \n ", at(2, 2, end) },
        { "cut off", "{\"a\":", at(1, 6, end) },
        { "a comma too many", "{\n  \"é\": 1,\r\n  }", at(3, 3, "unexpected '}'; expected string literal") },
        { "a comma too many in a list", "[1,]", at(1, 4, "unexpected ']'; expected '[', '{', or a literal") },
        { "columns count characters", "{\"é\xF0\x9F\x98\x80\" ]", at(1, 7, "unexpected ']'; expected ':'") },
        { "a second value", good + "\n{}", at(2, 1, "unexpected '{'; expected end of input") },
        { "a comment", "{} // x", at(1, 4, "invalid literal") },
        { "no number", "[1.]", at(1, 4, "invalid number; expected digit after '.'") },
        { "a leading zero", "[01]", at(1, 3, "unexpected number literal; expected ']'") },
        { "NaN", "[NaN]", at(1, 2, "invalid literal") },
        { "a raw newline in a text", "[\"a\nb\"]",
            at(1, 4, "invalid string: control character U+000A (LF) must be escaped to \\u000A or \\n") },
        { "an unknown escape", R"(["\q"])", at(1, 4, "invalid string: forbidden character after backslash") },
        { "half a pair", R"(["\ud83d"])",
            at(1, 9, "invalid string: surrogate U+D800..U+DBFF must be followed by U+DC00..U+DFFF") },
        { "no UTF-8", "[\"\xFF\"]", at(1, 3, "invalid string: ill-formed UTF-8 byte") },
        { "NUL at the end", good + QByteArray(1, '\0'), at(1, good.size() + 1, "unexpected character U+0000") },
        { "NUL within", QByteArray("[\n\0]", 4), at(2, 1, "unexpected character U+0000") },
        { "a mark", "\xEF\xBB\xBF" + good, "" },
        { "a mark before an error", "\xEF\xBB\xBF[}", at(1, 2, "unexpected '}'; expected '[', '{', or a literal") },
        { "half a mark", "\xEF\xBB{}", at(1, 3, "invalid BOM; must be 0xEF 0xBB 0xBF if given") },
        { "two marks", "\xEF\xBB\xBF\xEF\xBB\xBF" + good, at(1, 1, "invalid literal") },
    });
}

TEST(ShortcutSheetReader, A_null_byte_may_be_written_in_a_text)
{
    auto const sheet = ShortcutSheet::decode(QByteArray(SheetJson { .title = "a\\u0000b" }));
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->title, u'a' + QString(QChar(0)) + u'b');
}

TEST(ShortcutSheetReader, Hostile_documents_end_in_a_short_message)
{
    constexpr qsizetype size = 2 * 1024 * 1024;
    auto const repeated = [](QByteArray const& unit, QByteArray const& start = {}, QByteArray const& end = {}) {
        return start + unit.repeated((size - start.size() - end.size()) / unit.size()) + end;
    };
    QByteArray const head = R"({"schemaVersion":1,"title":"x","sections":[)";
    QByteArray const toStep = head
        + R"({"id":"s","title":"s","entries":[{"id":"e","title":"e","shortcuts":[{"steps":[{"key":"k","modifiers":[)";
    QByteArray const fromStep = "\"x\"]}]}]}]}]}";
    struct Hostile {
        char const* about;
        QByteArray json;
    };
    Hostile const cases[] {
        { "open arrays", repeated("[") },
        { "open objects", repeated(R"({"":)") },
        { "closed arrays", repeated("[", {}, QByteArray(size / 2, ']')) },
        { "arrays under an unknown key", repeated("[", R"({"x":)", QByteArray(size / 2, ']') + '}') },
        { "nested sections", repeated(R"({"sections":[)", head) },
        { "empty sections", repeated("{},", head, "{}]}") },
        { "small sections", repeated(R"({"id":"","title":"","entries":[]},)", head, "{}]}") },
        { "modifiers", repeated(R"("x",)", toStep, fromStep) },
        { "known modifiers", repeated(R"("shift",)", toStep, fromStep) },
        { "two modifiers of marks in disorder",
            toStep + "\"a" + QByteArray("\xCC\x81\xCC\xA3").repeated(size / 8) + "\",\""
                + QByteArray("\xCC\x81\xCC\xA3").repeated(size / 8) + "\"," + fromStep },
        { "equal keys", repeated(R"("sections":[{}],)", "{", R"("title":1})") },
        { "a long text", repeated("x", "{\"title\":\"") },
        { "a long number", repeated("1", "[") },
        { "a long blank title", repeated(" ", R"({"schemaVersion":1,"sections":[],"title":")", "\"}") },
        { "line ends", repeated("\n") },
        { "null bytes", repeated(QByteArray(1, '\0')) },
        { "bytes that are no text", repeated("\xFF") },
    };
    for (auto const& [about, json] : cases) {
        auto const message = messageFor(json);
        EXPECT_NE(message, "") << about;
        EXPECT_LT(message.size(), 300U) << about;
        EXPECT_THAT(message, testing::Not(testing::HasSubstr("json"))) << about;
    }
}

}
}
