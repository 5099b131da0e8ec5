#pragma once

#include "updates/feed/Release.h"

#include <QString>

namespace Quillory {

// A release's notes, and the issues that it closes, as rich text. All that came from the feed is text in it.
QString notesText(Release const& release);

}
