#include "SheetJson.h"
#include "library/ShortcutSheet.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

constexpr char const* valid = "";

QByteArrayList numberedEntries(int count, QByteArray const& prefix = {})
{
    QByteArrayList entries;
    for (int i = 0; i < count; ++i)
        entries.append(EntryJson { .id = prefix + QByteArray::number(i) });
    return entries;
}

QByteArrayList numberedSections(int count, int entriesEach = 0)
{
    QByteArrayList sections;
    for (int i = 0; i < count; ++i) {
        auto const id = QByteArray::number(i);
        sections.append(SectionJson { .id = id, .entries = numberedEntries(entriesEach, id + '.') });
    }
    return sections;
}

QByteArray description(qsizetype length)
{
    return R"(,"description":")" + QByteArray(length, 'd') + '"';
}

QByteArray text(qsizetype length)
{
    return R"(,"text":")" + QByteArray(length, 't') + '"';
}

TEST(ShortcutSheetValidation, The_sheets_own_limits_are_inclusive_and_come_in_order)
{
    QByteArray const emoji = "\xF0\x9F\x98\x80";
    QByteArray const decomposed = "e\xCC\x81";
    expectMessages({
        { "a plain sheet", SheetJson {}, valid },
        { "another version, everything else broken too",
            SheetJson { .schemaVersion = "2", .title = "", .sections = {} },
            "schemaVersion: unsupported version; expected 1" },
        { "version 0", SheetJson { .schemaVersion = "0" }, "schemaVersion: unsupported version; expected 1" },
        { "version -1", SheetJson { .schemaVersion = "-1" }, "schemaVersion: unsupported version; expected 1" },
        { "no title", SheetJson { .title = "", .more = description(4001) }, "title: must not be empty" },
        { "200 blanks", SheetJson { .title = QByteArray(200, ' ') }, "title: must not be empty" },
        { "201 blanks", SheetJson { .title = QByteArray(201, ' ') }, "title: must not be empty" },
        { "other white space", SheetJson { .title = "\\t\\n\\u00a0\\u2028\\u0085" }, "title: must not be empty" },
        { "a zero width space is not white", SheetJson { .title = "\\u200b" }, valid },
        { "200 characters", SheetJson { .title = QByteArray(200, 'x') }, valid },
        { "201 characters", SheetJson { .title = QByteArray(201, 'x') }, "title: exceeds 200 characters" },
        { "blanks around count", SheetJson { .title = 'x' + QByteArray(200, ' ') }, "title: exceeds 200 characters" },
        { "200 emoji", SheetJson { .title = emoji.repeated(200) }, valid },
        { "201 emoji", SheetJson { .title = emoji.repeated(201) }, "title: exceeds 200 characters" },
        { "100 decomposed letters", SheetJson { .title = decomposed.repeated(100) }, valid },
        { "101 decomposed letters", SheetJson { .title = decomposed.repeated(101) }, "title: exceeds 200 characters" },
        { "4000 characters", SheetJson { .more = description(4000) }, valid },
        { "4001 characters", SheetJson { .more = description(4001), .sections = {} },
            "description: exceeds 4000 characters" },
        { "a blank description", SheetJson { .more = R"(,"description":"  ")" }, valid },
        { "no sections", SheetJson { .sections = {} }, "sections: expected 1–100 sections" },
        { "100 sections", SheetJson { .sections = numberedSections(100) }, valid },
        { "101 sections", SheetJson { .sections = numberedSections(101, 20) }, "sections: expected 1–100 sections" },
        { "2000 entries", SheetJson { .sections = numberedSections(10, 200) }, valid },
        { "2001 entries in one section",
            SheetJson { .sections = { SectionJson { .id = "", .entries = numberedEntries(2001) } } },
            "sections: maximum 2000 entries per sheet" },
    });
}

TEST(ShortcutSheetValidation, Sections_are_checked_in_order)
{
    auto const sheet = [](SectionJson const& section) {
        return SheetJson { .sections = { SectionJson { .id = "first" }, section } };
    };
    expectMessages({
        { "a blank id", sheet({ .id = " ", .title = "" }), "sections[1].id: must not be empty" },
        { "128 characters", sheet({ .id = QByteArray(128, 'i') }), valid },
        { "129 characters", sheet({ .id = QByteArray(129, 'i'), .title = "" }),
            "sections[1].id: exceeds 128 characters" },
        { "an id again", sheet({ .id = "first", .title = "" }), "sections[1].id: duplicate section ID" },
        { "another case", sheet({ .id = "First" }), valid },
        { "blanks around", sheet({ .id = " first" }), valid },
        { "a canonical twin",
            SheetJson { .sections = { SectionJson { .id = "caf\xC3\xA9" }, SectionJson { .id = "cafe\xCC\x81" } } },
            "sections[1].id: duplicate section ID" },
        { "a blank title", sheet({ .title = "\\n", .more = description(4001) }),
            "sections[1].title: must not be empty" },
        { "a long title", sheet({ .title = QByteArray(201, 'x') }), "sections[1].title: exceeds 200 characters" },
        { "4000 characters", sheet({ .more = description(4000) }), valid },
        { "4001 characters", sheet({ .more = description(4001), .entries = numberedEntries(201) }),
            "sections[1].description: exceeds 4000 characters" },
        { "200 entries", sheet({ .entries = numberedEntries(200) }), valid },
        { "201 entries", sheet({ .entries = numberedEntries(201, "\\n") }),
            "sections[1].entries: maximum 200 entries per section" },
    });
}

TEST(ShortcutSheetValidation, Entries_are_checked_in_order)
{
    auto const five = QByteArrayList(5, shortcutJson({ StepJson {} }));
    expectMessages({
        { "a blank id", sheetWithEntry({ .id = "", .title = "" }), "sections[0].entries[0].id: must not be empty" },
        { "128 characters", sheetWithEntry({ .id = QByteArray(128, 'i') }), valid },
        { "129 characters", sheetWithEntry({ .id = QByteArray(129, 'i') }),
            "sections[0].entries[0].id: exceeds 128 characters" },
        { "an id again in another section",
            SheetJson {
                .sections = { SectionJson { .id = "a", .entries = { EntryJson { .id = "copy" } } },
                    SectionJson { .id = "b",
                        .entries = { EntryJson { .id = "other" }, EntryJson { .id = "copy", .title = "" } } } } },
            "sections[1].entries[1].id: duplicate entry ID" },
        { "a canonical twin",
            SheetJson { .sections = { SectionJson {
                            .entries = { EntryJson { .id = "\xE2\x84\xAB" }, EntryJson { .id = "A\xCC\x8A" } } } } },
            "sections[0].entries[1].id: duplicate entry ID" },
        { "the id of its section", sheetWithEntry({ .id = "s" }), valid },
        { "a blank title", sheetWithEntry({ .title = "\\u3000", .more = text(4001) }),
            "sections[0].entries[0].title: must not be empty" },
        { "a long title", sheetWithEntry({ .title = QByteArray(201, 'x') }),
            "sections[0].entries[0].title: exceeds 200 characters" },
        { "4000 characters", sheetWithEntry({ .more = text(4000) }), valid },
        { "4001 characters", sheetWithEntry({ .more = text(4001), .shortcuts = five }),
            "sections[0].entries[0].text: exceeds 4000 characters" },
        { "four alternatives", sheetWithEntry({ .shortcuts = five.first(4) }), valid },
        { "five alternatives", sheetWithEntry({ .shortcuts = five }),
            "sections[0].entries[0].shortcuts: maximum 4 alternatives" },
        { "a bad step before an id that comes again",
            SheetJson { .sections = { SectionJson { .entries = { EntryJson { .shortcuts = { shortcutJson({}) } } } },
                            SectionJson {} } },
            "sections[0].entries[0].shortcuts[0].steps: expected 1–8 steps" },
    });
}

TEST(ShortcutSheetValidation, Steps_are_checked_in_order)
{
    QByteArray const key = "sections[0].entries[0].shortcuts[0].steps[0].key: unknown key; use one printable character "
                           "or a documented key name";
    QByteArray const modifiers = "sections[0].entries[0].shortcuts[0].steps[0].modifiers: ";
    QByteArrayList const nine(9, StepJson {});
    auto const steps = [](QByteArrayList const& second) {
        return sheetWithEntry({ .shortcuts = { shortcutJson({ StepJson {} }), shortcutJson(second) } });
    };
    auto const with = [](QByteArray const& names) { return sheetWithStep({ .modifiers = names }); };
    expectMessages({
        { "no steps", steps({}), "sections[0].entries[0].shortcuts[1].steps: expected 1–8 steps" },
        { "eight steps", steps(nine.first(8)), valid },
        { "nine steps", steps(nine), "sections[0].entries[0].shortcuts[1].steps: expected 1–8 steps" },
        { "the place of a step", steps({ StepJson {}, StepJson { .key = "F1" } }),
            "sections[0].entries[0].shortcuts[1].steps[1].key: unknown key; use one printable character or a "
            "documented key name" },
        { "a bad key and a bad modifier", sheetWithStep({ .modifiers = R"(["Shift"])", .key = "nope" }),
            key.toStdString() },
        { "no modifier", with("[]"), valid },
        { "all modifiers", with(R"(["command","shift","option","control","function"])"), valid },
        { "a modifier again", with(R"(["shift","command","shift"])"),
            (modifiers + "duplicate modifier").toStdString() },
        { "an unknown one", with(R"(["Shift"])"), (modifiers + "unknown modifier").toStdString() },
        { "its symbol", with(R"(["⇧"])"), (modifiers + "unknown modifier").toStdString() },
        { "what is displayed", with(R"(["fn"])"), (modifiers + "unknown modifier").toStdString() },
        { "an empty one", with(R"([""])"), (modifiers + "unknown modifier").toStdString() },
        { "an unknown one again", with(R"(["x","x"])"), (modifiers + "duplicate modifier").toStdString() },
        { "an unknown one before a known one again", with(R"(["x","shift","shift"])"),
            (modifiers + "duplicate modifier").toStdString() },
        { "canonical twins", with(R"(["\u00e9","e\u0301"])"), (modifiers + "duplicate modifier").toStdString() },
    });
}

TEST(ShortcutSheetValidation, A_key_is_a_documented_name_a_function_key_or_one_printable_character)
{
    QByteArrayList good { "return", "enter", "tab", "escape", "space", "delete", "forwardDelete", "arrowLeft",
        "arrowRight", "arrowUp", "arrowDown", "home", "end", "pageUp", "pageDown", "capsLock", "K", "k", "f", "F", "7",
        "\\\"", "\\\\", "⌘", "é", "\\u00e9", "\\u0301", "\\ud83d\\ude00", "\xF0\x9F\x98\x80", "\xEE\x80\x80",
        "\xEF\xBF\xBD" };
    for (int number = 1; number <= 24; ++number)
        good.append('f' + QByteArray::number(number));
    for (auto const& key : good)
        EXPECT_EQ(messageFor(sheetWithStep({ .key = key })), valid) << key.toStdString();

    QByteArrayList const bad { "", " ", "\\t", "\\n", "\\u0000", "\\u001b", "\\u007f", "\\u0085", "\\u00a0", "\\u00ad",
        "\\u2028", "\\u3000", "\\u200b", "\\ufeff", "e\\u0301", "kk", "F1", "f0", "f00", "f01", "f25", "f99", "f100",
        "f1 ", "f-1", "f+1", "f1.0", "f\\u0661", "Return", "RETURN", "Space", "esc", "arrowleft", "⌘k",
        "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", "\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD" };
    for (auto const& key : bad)
        EXPECT_EQ(messageFor(sheetWithStep({ .key = key })),
            "sections[0].entries[0].shortcuts[0].steps[0].key: unknown key; use one printable character or a "
            "documented key name")
            << key.toStdString();
}

TEST(ShortcutSheetValidation, The_reader_of_the_message_is_told_which_format_it_is_about)
{
    auto const sheet = ShortcutSheet::decode(QByteArray(SheetJson { .title = "" }));
    ASSERT_FALSE(sheet);
    EXPECT_EQ(sheet.error().description(), u"Invalid Quillory JSON \u2014 title: must not be empty"_s);
}

}
}
