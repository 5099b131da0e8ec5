#pragma once

#include "library/LibraryStore.h"
#include "library/PreparedImage.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Quillory {

// All that the bars show, as the store has it at one moment.
struct ReaderWindowState {
    // In the place of the text.
    enum class Content { sheet, noFolder, noSheets, notYetKnown };

    // A structured sheet's icon; without a picture the symbol for a document stands for it.
    struct Icon {
        std::optional<PreparedImage> image;
        bool operator==(Icon const&) const = default;
    };

    static constexpr qsizetype warningsShown = 2;

    static ReaderWindowState of(LibraryStore const& store);

    bool hasSheet() const { return content == Content::sheet; }

    Content content = Content::noFolder;
    LibraryStore::Remedy remedy = LibraryStore::Remedy::none; // of what the message tells
    QString title;
    std::optional<Icon> icon;
    bool isPinned = false;
    bool learningModeEnabled = false;
    double textSize = 0; // points

    bool findVisible = false;
    QString findQuery;
    QString findStatus;
    std::optional<QString> message;
    QStringList iconWarnings; // the lines
    QString error;            // empty when there is none
    QString lastReadable;     // what follows it

    bool canGoBack = false;
    bool canGoForward = false;
    QString format;
    bool busy = false;
    bool hasFolder = false;
    bool hasFilePanel = false;

    bool operator==(ReaderWindowState const&) const = default;

private:
    void takeSheet(Sheet const& sheet);
};

}
