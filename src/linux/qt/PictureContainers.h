#pragma once

#include "platform/PictureDecoder.h"

#include <QByteArrayView>

#include <optional>

namespace Quillory {

// The kind of picture that begins with these bytes.
std::optional<PictureDecoder::Container> containerOf(QByteArrayView bytes);

// The toolkit's name for it.
QByteArray formatName(PictureDecoder::Container container);

}
