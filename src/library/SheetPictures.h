#pragma once

#include "library/Arrivals.h"
#include "library/LoadMemory.h"
#include "library/OrderedBudget.h"
#include "library/PreparedImage.h"
#include "library/Sheet.h"
#include "platform/FileSystem.h"
#include "platform/Sandbox.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Quillory {

// The icons of a structured sheet by reference, and a warning for each reference that gave none.
struct PreparedIcons {
    QMap<QString, PreparedImage> images;
    QStringList warnings;
};

// Prepares the pictures of one load's sheets. They are asked for in the order of the sheets, waited for together, and
// then taken. A content is decoded once, however many sheets show it, and not at all when a previous sheet has it.
// For one thread; folder and sandbox must outlive it.
class SheetPictures {
public:
    static constexpr qint64 markdownImageLimit = 10'485'760; // bytes; a file of exactly this size is read
    static constexpr int markdownImageSize = 720;            // pixels, the longest side after decoding
    static constexpr qint64 iconLimit = 262'144;             // bytes, likewise
    static constexpr int iconSide = 256;                     // pixels, exactly
    static constexpr qsizetype iconReferenceLimit = 1024;    // bytes of UTF-8
    static constexpr qsizetype shownReferenceLength = 100;   // characters

    // Of all bitmaps together. What comes after is not shown.
    static constexpr std::uint64_t memoryLimit = std::uint64_t { 256 } << 20U; // bytes

    SheetPictures(OpenFolder const& folder, Sandbox& sandbox, QList<Sheet> const& previous = {},
        LoadMemory const& earlier = {}, std::uint64_t limit = memoryLimit);

    // Begins what is not there yet, waiting in between while too much is under way.
    void askFor(Sheet const& sheet, Arrivals::Time until, std::stop_token const& ended);

    // Waits until all is there, or all that was begun here, or the wait is to end.
    void wait(Arrivals::Time until, std::stop_token const& ended);
    void waitForFresh(Arrivals::Time until, std::stop_token const& ended);
    bool hasStarted() const { return m_hasStarted; }

    // What is there of a sheet's pictures, by the reference as written. One that can't be shown is left out in silence.
    QMap<QString, PreparedImage> prepareMarkdownImages(ParsedMarkdown const& parsed) const;

    PreparedIcons prepareIcons(ShortcutSheet const& sheet) const;

    // For the next load.
    void remember(LoadMemory& memory) const;

private:
    struct Content {
        std::uint64_t fingerprint = 0;
        std::shared_ptr<SandboxJob> job; // while it is under way
        std::optional<PreparedImage> image;
        bool isRefused = false;
        bool isFresh = false; // the job was started here
    };

    // One of the two uses of a picture: each reads and decodes in its own way.
    struct Use {
        qint64 limit;
        std::function<SandboxRequest(QByteArray bytes)> request;
        LoadMemory::Pictures earlier; // a copy, since none may be given
        QHash<QString, std::shared_ptr<Content>> ofReference; // null where there is nothing to show
        QHash<QByteArray, std::shared_ptr<Content>> ofPath;
        QHash<std::uint64_t, std::shared_ptr<Content>> ofFingerprint;
        QHash<std::uint64_t, PreparedImage> previous;
    };

    void askFor(QString const& reference, Use& use, Arrivals::Time until, std::stop_token const& ended);
    std::shared_ptr<Content> contentAt(QByteArray const& path, Use& use);
    std::shared_ptr<Content> begin(QByteArray const& bytes, Use& use);
    bool takeNext(Arrivals::Time until, std::stop_token const& ended);
    void finish(std::size_t number);
    void charge(std::size_t number);
    void letGo(std::size_t number);
    static void remember(Use const& use, LoadMemory::Pictures& pictures);

    OpenFolder const& m_folder;
    Sandbox& m_sandbox;
    Use m_markdownImages;
    Use m_icons;
    std::vector<std::shared_ptr<Content>> m_contents; // in the order in which they were asked for
    OrderedBudget m_budget;
    Arrivals m_arrivals;
    std::size_t m_underWay = 0; // jobs, of which so many are fresh
    std::size_t m_fresh = 0;
    bool m_hasStarted = false; // a job
    qint64 m_bytesUnderWay = 0;
};

}
