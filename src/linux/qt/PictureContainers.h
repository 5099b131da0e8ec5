#pragma once

#include "platform/PictureDecoder.h"

#include <QByteArrayView>

#include <optional>

namespace Quillory {

// What kind of picture the bytes begin like.
std::optional<PictureDecoder::Container> containerOf(QByteArrayView bytes);

// The toolkit's name for it.
QByteArray formatName(PictureDecoder::Container container);

}
