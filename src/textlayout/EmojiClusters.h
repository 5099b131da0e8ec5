#pragma once

#include "textlayout/LayoutContext.h"

#include <QStringView>

#include <vector>

namespace Quillory {

// The characters that ask to be drawn as a coloured picture though their parts have letters of their own in other fonts:
// keycaps, skin tones and whatever is followed by U+FE0F. Whole clusters, in order.
std::vector<TextRange> emojiClusters(QStringView text);

}
