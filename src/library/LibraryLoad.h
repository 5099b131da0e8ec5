#pragma once

#include "library/Sheet.h"
#include "library/SheetPictures.h"
#include "platform/FileSystem.h"
#include "platform/PictureDecoder.h"
#include "platform/SystemError.h"

#include <QList>
#include <QString>

#include <expected>
#include <optional>

namespace Quillory {

inline constexpr qint64 sheetSizeLimit = 2'097'152; // bytes; a file of exactly this size loads

// The sheets of a folder in their order: its direct `.md` and `.quillory.json` files, by lowercased name and then by
// name. Fails only when the folder can't be listed; a bad file is a sheet with an error.
// Safe on any thread. A file whose text is that of a sheet in `previous` takes over what was made of it, and so does a
// picture whose bytes are the same.
std::expected<QList<Sheet>, SystemError> loadLibrary(
    FileSystem const& files, PictureDecoder const& decoder, QString const& folder, QList<Sheet> const& previous = {});

// One entry of a folder. Absent for what is no regular file.
std::optional<Sheet> loadSheet(OpenFolder const& folder, SheetPictures& pictures, QByteArray const& name);

}
