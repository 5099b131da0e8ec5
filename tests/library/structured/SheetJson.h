#pragma once

#include "library/ShortcutSheet.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QByteArrayList>

namespace Quillory {

// Writes structured sheets for tests. Every part is valid as it stands; a test spoils the one that it is about.
struct StepJson {
    QByteArray modifiers = R"(["command"])";
    QByteArray key = "k";

    operator QByteArray() const { return R"({"modifiers":)" + modifiers + R"(,"key":")" + key + "\"}"; }
};

struct EntryJson {
    QByteArray id = "e";
    QByteArray title = "Entry";
    QByteArray more = {}; // further members, each with a comma before it
    QByteArrayList shortcuts = {};

    operator QByteArray() const
    {
        return R"({"id":")" + id + R"(","title":")" + title + '"' + more + R"(,"shortcuts":[)" + shortcuts.join(',')
            + "]}";
    }
};

struct SectionJson {
    QByteArray id = "s";
    QByteArray title = "Section";
    QByteArray more = {};
    QByteArrayList entries = {};

    operator QByteArray() const
    {
        return R"({"id":")" + id + R"(","title":")" + title + '"' + more + R"(,"entries":[)" + entries.join(',') + "]}";
    }
};

struct SheetJson {
    QByteArray schemaVersion = "1";
    QByteArray title = "Sheet";
    QByteArray more = {};
    QByteArrayList sections { SectionJson {} };

    operator QByteArray() const
    {
        return R"({"schemaVersion":)" + schemaVersion + R"(,"title":")" + title + '"' + more + R"(,"sections":[)"
            + sections.join(',') + "]}";
    }
};

inline QByteArray shortcutJson(QByteArrayList const& steps)
{
    return R"({"steps":[)" + steps.join(',') + "]}";
}

inline QByteArray sheetWithEntry(EntryJson const& entry)
{
    return SheetJson { .sections = { SectionJson { .entries = { entry } } } };
}

inline QByteArray sheetWithStep(StepJson const& step)
{
    return sheetWithEntry({ .shortcuts = { shortcutJson({ step }) } });
}

// What is told of a document, and nothing of a valid one.
inline std::string messageFor(QByteArray const& json)
{
    auto const sheet = ShortcutSheet::decode(json);
    return sheet ? std::string() : sheet.error().message.toStdString();
}

struct MessageCase {
    std::string about;
    QByteArray json;
    std::string message;
};

inline void expectMessages(std::initializer_list<MessageCase> cases)
{
    for (auto const& [about, json, message] : cases)
        EXPECT_EQ(messageFor(json), message) << about;
}

}
