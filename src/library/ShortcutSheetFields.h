#pragma once

#include <QtGlobal>

#include <array>
#include <span>
#include <string_view>

// The keys of a structured sheet, level by level.
namespace Quillory::ShortcutSheetFields {

enum class Kind : quint8 { Integer, Text, Object, List };
enum class Presence : quint8 { Required, Optional };

// The levels that are open while a document is read: an object or a list of objects by turns, last the list of names.
enum class Level : quint8 {
    Document,
    Sheet,
    Sections,
    Section,
    Entries,
    Entry,
    Shortcuts,
    Shortcut,
    Steps,
    Step,
    Modifiers
};
inline constexpr std::size_t levelCount = 11;
inline constexpr std::size_t maximumFields = 5;

struct Field {
    std::string_view name;
    Kind kind;
    Presence presence = Presence::Required;
};

// In the order in which failures are reported.
inline constexpr std::array<Field, 5> sheetFields { { { "schemaVersion", Kind::Integer }, { "title", Kind::Text },
    { "description", Kind::Text, Presence::Optional }, { "sections", Kind::List },
    { "icon", Kind::Text, Presence::Optional } } };
inline constexpr std::array<Field, 5> sectionFields { { { "id", Kind::Text }, { "title", Kind::Text },
    { "description", Kind::Text, Presence::Optional }, { "entries", Kind::List },
    { "icon", Kind::Text, Presence::Optional } } };
inline constexpr std::array<Field, 4> entryFields { { { "id", Kind::Text }, { "title", Kind::Text },
    { "text", Kind::Text, Presence::Optional }, { "shortcuts", Kind::List } } };
inline constexpr std::array<Field, 1> shortcutFields { { { "steps", Kind::List } } };
inline constexpr std::array<Field, 2> stepFields { { { "modifiers", Kind::List }, { "key", Kind::Text } } };

inline constexpr Field objectElement { "", Kind::Object };
inline constexpr Field textElement { "", Kind::Text };

constexpr std::span<Field const> fieldsOf(Level level)
{
    switch (level) {
    case Level::Sheet:
        return sheetFields;
    case Level::Section:
        return sectionFields;
    case Level::Entry:
        return entryFields;
    case Level::Shortcut:
        return shortcutFields;
    case Level::Step:
        return stepFields;
    default:
        return {};
    }
}

constexpr bool isObject(Level level)
{
    return !fieldsOf(level).empty();
}

}
