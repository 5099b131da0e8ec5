#pragma once

#include "library/Interpretation.h"
#include "library/PreparedImage.h"
#include "library/ShortcutSheet.h"
#include "rendering/ParsedMarkdown.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillory {

// One sheet as loaded: a plain value, cheap to copy, readable on any thread once made.
struct Sheet {
    QString id;                               // the file's name as it is on disk, extension included
    QString title;                            // shown to the user
    QString source;                           // the whole text; empty after a failed read
    std::optional<QString> error;             // why the last read of the file failed
    std::optional<ParsedMarkdown> parsed;     // of a Markdown sheet: what its source is parsed to
    QMap<QString, PreparedImage> images;      // by the reference as written
    std::optional<ShortcutSheet> shortcuts;   // of a structured sheet, likewise
    QStringList iconWarnings;
    Interpretation interpretation = Interpretation::complete; // of the source into `parsed`

    // Ids, titles and image references are compared canonically, all else exactly.
    bool operator==(Sheet const& other) const;
};

// The sheet with that id: the same id before one that is only canonically equal. Null when there is none.
Sheet const* findSheet(QList<Sheet> const& sheets, QString const& id);

}
