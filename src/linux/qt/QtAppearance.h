#pragma once

#include "platform/PreferredAppearance.h"

namespace Quillory {

// Gives all windows of the program dark or light colours: the desktop's own palette where that is as preferred, otherwise
// one of ours with the desktop's accent. The application object exists. GUI thread only.
void wear(PreferredAppearance preferred);

}
