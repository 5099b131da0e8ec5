#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>

namespace Quillory {

// A structured sheet: sections of entries, each with its alternative shortcuts. Field names are the keys of the file.
// A plain value, cheap to copy, usable on any thread. What `decode` gives is valid.
struct ShortcutSheet {
    struct Step;
    struct Shortcut;
    struct Entry;
    struct Section;
    struct FormatError;

    // Reads and validates a document. Never throws, whatever the bytes are.
    static std::expected<ShortcutSheet, FormatError> decode(QByteArrayView bytes);

    qint64 schemaVersion = 0;
    QString title;
    std::optional<QString> description;
    QList<Section> sections;
    std::optional<QString> icon;

    // The icon references of the sheet and then of its sections, in order, as often as they occur.
    QStringList icons() const;

    bool operator==(ShortcutSheet const& other) const;
};

// Keys pressed at once.
struct ShortcutSheet::Step {
    QStringList modifiers; // by name, in the order of the file
    QString key;

    bool operator==(Step const&) const = default;
};

// Steps pressed one after the other.
struct ShortcutSheet::Shortcut {
    QList<Step> steps;

    bool operator==(Shortcut const&) const = default;
};

struct ShortcutSheet::Entry {
    QString id;
    QString title;
    std::optional<QString> text;
    QList<Shortcut> shortcuts; // alternatives

    bool operator==(Entry const&) const = default;
};

struct ShortcutSheet::Section {
    QString id;
    QString title;
    std::optional<QString> description;
    QList<Entry> entries;
    std::optional<QString> icon;

    bool operator==(Section const&) const = default;
};

struct ShortcutSheet::FormatError {
    QString message; // where, ": ", and what

    // For the user.
    QString description() const;

    bool operator==(FormatError const&) const = default;
};

}
