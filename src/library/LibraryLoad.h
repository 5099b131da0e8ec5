#pragma once

#include "library/LoadedLibrary.h"
#include "library/SheetPictures.h"
#include "platform/FileSystem.h"
#include "platform/PictureDecoder.h"
#include "platform/Sandbox.h"
#include "platform/SystemError.h"

#include <QList>
#include <QString>

#include <chrono>
#include <cstdint>
#include <expected>
#include <memory>
#include <stop_token>

namespace Quillory {

inline constexpr qint64 sheetSizeLimit = 2'097'152; // bytes; a file of exactly this size loads

// The sheets of a folder in their order: its direct `.md` and `.quillory.json` files, by lowercased name and then by
// name. Fails only when the folder can't be listed; a bad file is a sheet with an error.
// Safe on any thread. What is foreign is interpreted in `sandbox`. A file whose text is that of a sheet in `previous`
// takes over what was made of it, and so does a picture whose bytes are the same.
struct LibraryLoad {
    // Of all trees together. Sheets after that have an error, in the order of the sheets.
    static constexpr std::uint64_t treeLimit = std::uint64_t { 1 } << 30U; // bytes

    FileSystem const& files;
    Sandbox& sandbox;
    QString folder;
    QList<Sheet> previous;
    std::shared_ptr<LoadMemory const> earlier = std::make_shared<LoadMemory>(); // of the same load as `previous`
    std::stop_token hurry; // makes it wait for nothing that was under way before
    std::stop_token ended; // for nothing at all, and leave sheets out

    // After that long the load ends with what it has: texts that are still being read stand as code. Pictures have a
    // half of it more.
    std::chrono::milliseconds patience { 1000 };
    std::uint64_t trees = treeLimit;
    std::uint64_t pictures = SheetPictures::memoryLimit;

    std::expected<LoadedLibrary, SystemError> run() const;
};

// The same with everything done in this process.
std::expected<QList<Sheet>, SystemError> loadLibrary(
    FileSystem const& files, PictureDecoder const& decoder, QString const& folder, QList<Sheet> const& previous = {});

}
