#pragma once

#include "platform/Downloads.h"

namespace Quillory {

// Why a download failed, in a sentence for the user.
QString toSentence(Downloads::Fault fault);

}
