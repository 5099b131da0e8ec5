#pragma once

namespace Quillory {

// Whether the program runs in a sandbox that shows it none of the user's files, and none of the host's programs, but by portals.
bool isInFlatpakSandbox();

}
