#include "library/ShortcutSheet.h"

#include <QByteArrayList>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

using Bytes = QByteArray;
using List = QByteArrayList;

// Structured sheets, of which every part is valid as it stands. `more` are further members, a comma before each.
Bytes step(Bytes const& key = "k", Bytes const& modifiers = R"(["command"])")
{
    return R"({"modifiers":)" + modifiers + R"(,"key":")" + key + "\"}";
}
Bytes shortcut(List const& steps)
{
    return R"({"steps":[)" + steps.join(',') + "]}";
}
Bytes entry(List const& shortcuts, Bytes const& id = "e", Bytes const& title = "E", Bytes const& more = {})
{
    return R"({"id":")" + id + R"(","title":")" + title + '"' + more + R"(,"shortcuts":[)" + shortcuts.join(',') + "]}";
}
Bytes section(List const& entries, Bytes const& id = "s", Bytes const& title = "S", Bytes const& more = {})
{
    return R"({"id":")" + id + R"(","title":")" + title + '"' + more + R"(,"entries":[)" + entries.join(',') + "]}";
}
Bytes sheet(List const& sections, Bytes const& title = "T", Bytes const& more = {}, Bytes const& version = "1")
{
    return R"({"schemaVersion":)" + version + R"(,"title":")" + title + '"' + more + R"(,"sections":[)"
        + sections.join(',') + "]}";
}
Bytes versioned(Bytes const& version)
{
    return sheet({ section({}) }, "T", {}, version);
}
Bytes withSteps(List const& steps)
{
    return sheet({ section({ entry({ shortcut(steps) }) }) });
}

constexpr auto valid = "";

// What is told of a document, and nothing of a valid one.
std::string messageFor(Bytes const& json)
{
    auto const sheet = ShortcutSheet::decode(json);
    return sheet ? valid : sheet.error().message.toStdString();
}

void expectMessages(std::initializer_list<std::pair<Bytes, std::string>> cases)
{
    for (auto const& [json, message] : cases)
        EXPECT_EQ(messageFor(json), message) << json.left(400).toStdString();
}

TEST(ShortcutSheet, Every_field_arrives_as_written)
{
    auto const sheet = ShortcutSheet::decode(R"({"icon":"icons/a.png","future":{"deep":[1,{"x":null}]},"sections":[
        {"id":"edit","title":" Edit ","description":"","icon":"icons/b.png","entries":[
            {"id":"copy","title":"Copy","text":"Takes\r\nit","shortcuts":[
                {"steps":[{"modifiers":["shift","command"],"key":"p"},{"modifiers":[],"key":"\u0065"}]},
                {"steps":[{"key":"space","modifiers":["function"]}]}]},
            {"id":"none","title":"a\u0000b","text":null,"shortcuts":[]}]},
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
                { u"none"_s, u'a' + QString(QChar(0)) + u'b', std::nullopt, {} } },
            u"icons/b.png"_s },
        { u"empty"_s, u"Empty"_s, std::nullopt, {}, std::nullopt },
    };
    EXPECT_EQ(*sheet, expected);
    EXPECT_EQ(sheet->icons(), (QStringList { u"icons/a.png"_s, u"icons/b.png"_s }));
    expected.sections[0].entries[0].shortcuts[0].steps[1].modifiers.append(u"shift"_s);
    EXPECT_FALSE(*sheet == expected);
}

// In the order in which they are told. Each field but those before it is wrong, and the file has them backwards.
TEST(ShortcutSheet, The_first_field_that_is_missing_or_of_a_wrong_kind_is_named)
{
    struct Field {
        char const* name;
        std::string kind;
        Bytes good;
        bool isOptional = false;
    };
    struct Object {
        std::string path;
        std::function<Bytes(Bytes const&)> within;
        std::vector<Field> fields;
    };
    Field const title { "title", "a string", "\"T\"" };
    Field const id { "id", "a string", "\"i\"" };
    Field const icon { "icon", "a string", "\"i.png\"", true };
    Field const description { "description", "a string", "\"\"", true };
    Object const objects[] {
        { "", [](Bytes const& json) { return json; },
            { { "schemaVersion", "an integer", "1" }, title, description,
                { "sections", "an array", R"([{"id":"s","title":"S","entries":[]}])" }, icon } },
        { "sections.1.", [](Bytes const& json) { return sheet({ section({}), json }); },
            { id, title, description, { "entries", "an array", "[]" }, icon } },
        { "sections.0.entries.1.", [](Bytes const& json) { return sheet({ section({ entry({}), json }) }); },
            { id, title, { "text", "a string", "\"\"", true }, { "shortcuts", "an array", "[]" } } },
        { "sections.0.entries.0.shortcuts.1.",
            [](Bytes const& json) { return sheet({ section({ entry({ shortcut({ step() }), json }) }) }); },
            { { "steps", "an array", R"([{"modifiers":[],"key":"k"}])" } } },
        { "sections.0.entries.0.shortcuts.0.steps.1.", [](Bytes const& json) { return withSteps({ step(), json }); },
            { { "modifiers", "an array", "[]" }, { "key", "a string", "\"k\"" } } },
    };
    for (auto const& [path, within, fields] : objects) {
        auto const told = [&](std::size_t spoiled, Bytes const& value) {
            Bytes members;
            for (auto index = fields.size(); index-- > 0;) {
                auto const member = index < spoiled ? fields[index].good : index == spoiled ? value : Bytes("true");
                members += member.isEmpty() ? Bytes() : ",\"" + Bytes(fields[index].name) + "\":" + member;
            }
            return messageFor(within('{' + members.mid(1) + '}'));
        };
        for (std::size_t index = 0; index < fields.size(); ++index) {
            auto const& [name, kind, good, isOptional] = fields[index];
            auto const next = index + 1 < fields.size() ? told(index + 1, "true") : valid;
            auto const expected = path + name + ": expected " + kind + " but found ";
            auto const missing = (path.empty() ? "." : "") + path + name + ": the required key is missing";
            EXPECT_EQ(told(index, "true"), expected + "a boolean");
            EXPECT_EQ(told(index, "{}"), expected + "an object");
            EXPECT_EQ(told(index, "null"), isOptional ? next : expected + "null");
            EXPECT_EQ(told(index, ""), isOptional ? next : missing);
            EXPECT_EQ(told(index, good), next);
        }
    }
}

TEST(ShortcutSheet, The_first_of_several_elements_the_last_of_equal_keys_and_kinds_before_limits_are_told)
{
    auto const twice = [](Bytes const& first, Bytes const& last) {
        return R"({"schemaVersion":1,"title":)" + first
            + R"(,"sections":[{"id":"z","title":"z","entries":[]},3],"\u0074itle":)" + last
            + R"(,"sections":[{"id":"a","title":"a","entries":[]}]})";
    };
    expectMessages({
        { "[]", "document: expected an object but found an array" },
        { "\"x\"", "document: expected an object but found a string" },
        { sheet({ section({}), "7", "[]" }), "sections.1: expected an object but found a number" },
        { sheet({ section({ "{}" }), "{}" }), "sections.0.entries.0.id: the required key is missing" },
        { withSteps({ step("", R"(["shift",{"a":[]},1])") }),
            "sections.0.entries.0.shortcuts.0.steps.0.modifiers.1: expected a string but found an object" },
        { sheet({}, "", R"(,"icon":{})", "2"), "icon: expected a string but found an object" },
        { twice("7", "\"t\""), valid },
        { twice("\"t\"", "7"), "title: expected a string but found a number" },
    });
    auto const last = ShortcutSheet::decode(twice("\"a\"", "\"b\"")).value();
    EXPECT_EQ(last.title, u"b"_s);
    EXPECT_EQ(last.sections.size(), 1);
}

TEST(ShortcutSheet, A_number_is_an_integer_by_its_value)
{
    for (auto const* one : { "1", "1.0", "1e0", "10e-1" })
        EXPECT_EQ(messageFor(versioned(one)), valid) << one;
    for (auto const* other : { "0", "-1", "9223372036854775807", "-9223372036854775808", "-9223372036854775808.0" })
        EXPECT_EQ(messageFor(versioned(other)), "schemaVersion: unsupported version; expected 1") << other;
    for (std::string const beyond :
        { "9223372036854775808", "18446744073709551616", "-9223372036854777856", "9223372036854775808.0", "1e300" })
        EXPECT_EQ(
            messageFor(versioned(beyond.c_str())), "schemaVersion: the number " + beyond + " does not fit an integer");
    expectMessages({
        { versioned("1.5"), "schemaVersion: expected an integer but found the number 1.5" },
        { versioned("1.5" + Bytes(1 << 20, '0')),
            "schemaVersion: expected an integer but found the number 1.5" + std::string(37, '0') + "…" },
        { versioned("\"1\""), "schemaVersion: expected an integer but found a string" },
        { versioned("1e400"), "document: number out of range at line 1, column 22" },
    });
}

TEST(ShortcutSheet, What_is_no_json_is_told_by_line_and_column)
{
    auto const good = sheet({ section({}) });
    auto const at = [](int line, qsizetype column, std::string const& reason) {
        return "document: not valid JSON at line " + std::to_string(line) + ", column " + std::to_string(column) + ": "
            + reason;
    };
    expectMessages({
        { "", at(1, 1, "unexpected end of input; expected '[', '{', or a literal") },
        { " \n ", at(2, 2, "unexpected end of input; expected '[', '{', or a literal") },
        { "{\n  \"é\": 1,\r\n  }", at(3, 3, "unexpected '}'; expected string literal") },
        { "{\"é\xF0\x9F\x98\x80\" ]", at(1, 7, "unexpected ']'; expected ':'") },
        { good + "\n{}", at(2, 1, "unexpected '{'; expected end of input") },
        { "{} // x", at(1, 4, "invalid literal") },
        { "[NaN]", at(1, 2, "invalid literal") },
        { "[\"a\nb\"]", at(1, 4, "invalid string: control character U+000A (LF) must be escaped to \\u000A or \\n") },
        { "[\"\xFF\"]", at(1, 3, "invalid string: ill-formed UTF-8 byte") },
        { good + Bytes(1, '\0'), at(1, good.size() + 1, "unexpected character U+0000") },
        { Bytes("[\n\0]", 4), at(2, 1, "unexpected character U+0000") },
        { "\xEF\xBB\xBF" + good, valid },
        { "\xEF\xBB\xBF[}", at(1, 2, "unexpected '}'; expected '[', '{', or a literal") },
        { "\xEF\xBB\xBF\xEF\xBB\xBF" + good, at(1, 1, "invalid literal") },
    });
}

TEST(ShortcutSheet, Hostile_documents_end_in_a_short_message)
{
    constexpr qsizetype size = 2 * 1024 * 1024;
    auto const repeated = [](Bytes const& unit, Bytes const& start = {}, Bytes const& end = {}) {
        return start + unit.repeated((size - start.size() - end.size()) / unit.size()) + end;
    };
    Bytes const head = R"({"schemaVersion":1,"title":"x","sections":[)";
    Bytes const toStep = head
        + R"({"id":"s","title":"s","entries":[{"id":"e","title":"e","shortcuts":[{"steps":[{"key":"k","modifiers":[)";
    Bytes const fromStep = "\"x\"]}]}]}]}]}";
    auto const marks = Bytes("\xCC\x81\xCC\xA3").repeated(size / 8);
    std::pair<char const*, Bytes> const cases[] {
        { "open arrays", repeated("[") },
        { "open objects", repeated(R"({"":)") },
        { "closed arrays", repeated("[", {}, Bytes(size / 2, ']')) },
        { "arrays under an unknown key", repeated("[", R"({"x":)", Bytes(size / 2, ']') + '}') },
        { "nested sections", repeated(R"({"sections":[)", head) },
        { "empty sections", repeated("{},", head, "{}]}") },
        { "known modifiers", repeated(R"("shift",)", toStep, fromStep) },
        { "two modifiers of marks in disorder", toStep + "\"a" + marks + "\",\"" + marks + "\"," + fromStep },
        { "equal keys", repeated(R"("sections":[{}],)", "{", R"("title":1})") },
        { "a long number", repeated("1", "[") },
        { "a long blank title", repeated(" ", R"({"schemaVersion":1,"sections":[],"title":")", "\"}") },
        { "bytes that are no text", repeated("\xFF") },
    };
    for (auto const& [about, json] : cases) {
        auto const message = messageFor(json);
        EXPECT_NE(message, valid) << about;
        EXPECT_LT(message.size(), 300U) << about;
        EXPECT_THAT(message, testing::Not(testing::HasSubstr("json"))) << about;
    }
}

// Whatever would be told later is wrong as well.
TEST(ShortcutSheet, Limits_are_told_in_order_from_the_outside_in)
{
    auto const exactly = [](qsizetype length) { return Bytes(length, 'x'); };
    auto const entries = [](int count, Bytes const& prefix) {
        List list;
        for (int number = 0; number < count; ++number)
            list.append(entry({}, prefix + Bytes::number(number)));
        return list;
    };
    auto const texts = [&](qsizetype length) {
        return R"(,"description":")" + exactly(length) + R"(","text":")" + exactly(length) + '"';
    };
    List hundred;
    for (int number = 0; number < 100; ++number)
        hundred.append(section(entries(number < 10 ? 200 : 0, Bytes::number(number) + '.'), Bytes::number(number)));
    auto const emoji = Bytes("\xF0\x9F\x98\x80").repeated(200);
    List const eight(8, step("k", R"(["command","shift","option","control","function"])"));
    List const four(4, shortcut(eight));
    auto const largest = section({ entry(four, exactly(128), emoji, texts(4000)) }, exactly(128), emoji, texts(4000));
    auto const tooMany = "sections: expected 1–100 sections";
    expectMessages({
        { sheet(hundred, "\\u200b"), valid },
        { sheet({ largest }, emoji, texts(4000)), valid },
        { sheet({}, "", texts(4001), "2"), "schemaVersion: unsupported version; expected 1" },
        { sheet({}, Bytes(201, ' '), texts(4001)), "title: must not be empty" },
        { sheet({}, exactly(201), texts(4001)), "title: exceeds 200 characters" },
        { sheet({}, Bytes("e\xCC\x81").repeated(101), texts(4001)), "title: exceeds 200 characters" },
        { sheet({}, "T", texts(4001)), "description: exceeds 4000 characters" },
        { sheet({}), tooMany },
        { sheet(hundred + List { section(entries(1, "")) }), tooMany },
        { sheet({ section(entries(2001, ""), "") }), "sections: maximum 2000 entries per sheet" },
        { sheet({ section({ entry({ shortcut({}) }), entry({}) }) }),
            "sections[0].entries[0].shortcuts[0].steps: expected 1–8 steps" },
    });

    auto const second = [](Bytes const& other) { return sheet({ section({}, "first"), other }); };
    auto const many = List { entry({}, "") } + entries(200, "");
    std::string const ofSection = "sections[1].";
    expectMessages({
        { second(section(many, " ", "", texts(4001))), ofSection + "id: must not be empty" },
        { second(section(many, exactly(129), "", texts(4001))), ofSection + "id: exceeds 128 characters" },
        { second(section(many, "first", "", texts(4001))), ofSection + "id: duplicate section ID" },
        { second(section(many, "s", "\\n", texts(4001))), ofSection + "title: must not be empty" },
        { second(section(many, "s", exactly(201), texts(4001))), ofSection + "title: exceeds 200 characters" },
        { second(section(many, "s", "S", texts(4001))), ofSection + "description: exceeds 4000 characters" },
        { second(section(many)), ofSection + "entries: maximum 200 entries per section" },
    });

    auto const third = [](Bytes const& other) {
        return sheet({ section({ entry({}, "first") }, "a"), section({ entry({}), other }) });
    };
    auto const ninth = step("F1", R"(["x","x"])");
    List const five(5, shortcut(eight + List { ninth }));
    std::string const ofEntry = "sections[1].entries[1].";
    expectMessages({
        { third(entry(five, "", "", texts(4001))), ofEntry + "id: must not be empty" },
        { third(entry(five, exactly(129), "", texts(4001))), ofEntry + "id: exceeds 128 characters" },
        { third(entry(five, "first", "", texts(4001))), ofEntry + "id: duplicate entry ID" },
        { third(entry(five, "a", "\\u3000", texts(4001))), ofEntry + "title: must not be empty" },
        { third(entry(five, "a", exactly(201), texts(4001))), ofEntry + "title: exceeds 200 characters" },
        { third(entry(five, "a", "A", texts(4001))), ofEntry + "text: exceeds 4000 characters" },
        { third(entry(five, "a")), ofEntry + "shortcuts: maximum 4 alternatives" },
        { third(entry({ shortcut(eight), five[0] }, "a")), ofEntry + "shortcuts[1].steps: expected 1–8 steps" },
        { third(entry({ shortcut({ step(), ninth }) }, "a")),
            ofEntry + "shortcuts[0].steps[1].key: unknown key; use one printable character or a documented key name" },
    });
}

TEST(ShortcutSheet, Names_are_compared_by_what_they_mean_to_a_reader)
{
    auto const sections = [](Bytes const& a, Bytes const& b) { return sheet({ section({}, a), section({}, b) }); };
    auto const modifiers = [](Bytes const& names) { return withSteps({ step("k", names) }); };
    std::string const ofStep = "sections[0].entries[0].shortcuts[0].steps[0].modifiers: ";
    expectMessages({
        { sections("first", "First"), valid },
        { sections("first", " first"), valid },
        { sections("caf\xC3\xA9", "cafe\xCC\x81"), "sections[1].id: duplicate section ID" },
        { sheet({ section({ entry({}, "\xE2\x84\xAB"), entry({}, "A\xCC\x8A") }) }),
            "sections[0].entries[1].id: duplicate entry ID" },
        { modifiers("[]"), valid },
        { modifiers(R"(["shift","command","shift"])"), ofStep + "duplicate modifier" },
        { modifiers(R"(["x","shift","shift"])"), ofStep + "duplicate modifier" },
        { modifiers(R"(["\u00e9","e\u0301"])"), ofStep + "duplicate modifier" },
        { modifiers(R"(["Shift"])"), ofStep + "unknown modifier" },
        { modifiers(R"(["⇧"])"), ofStep + "unknown modifier" },
        { modifiers(R"(["fn"])"), ofStep + "unknown modifier" },
        { modifiers(R"([""])"), ofStep + "unknown modifier" },
    });
    EXPECT_EQ(ShortcutSheet::decode(sheet({}, "")).error().description(),
        u"Invalid Quillory JSON \u2014 title: must not be empty"_s);
}

TEST(ShortcutSheet, A_key_is_a_documented_name_a_function_key_or_one_printable_character)
{
    List good { "return", "enter", "tab", "escape", "space", "delete", "forwardDelete", "arrowLeft", "arrowRight",
        "arrowUp", "arrowDown", "home", "end", "pageUp", "pageDown", "capsLock", "K", "f", "7", "\\\"", "⌘", "\\u0301",
        "\\ud83d\\ude00", "\xEE\x80\x80", "\xEF\xBF\xBD" };
    for (int number = 1; number <= 24; ++number)
        good.append('f' + Bytes::number(number));
    for (auto const& key : good)
        EXPECT_EQ(messageFor(withSteps({ step(key) })), valid) << key.toStdString();

    for (Bytes const key : { "", " ", "\\t", "\\u0000", "\\u007f", "\\u00a0", "\\u00ad", "\\u2028", "\\ufeff",
             "e\\u0301", "kk", "F1", "f0", "f01", "f25", "f100", "f1 ", "f-1", "f\\u0661", "Return", "esc", "arrowleft",
             "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", "\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD" })
        EXPECT_THAT(messageFor(withSteps({ step(key) })), testing::HasSubstr(".key: unknown key")) << key.toStdString();
}

}
}
