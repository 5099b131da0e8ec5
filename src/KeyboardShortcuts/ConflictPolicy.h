#pragma once

namespace Quillory {

// What becomes of a shortcut that is used already: refused, taken when the user insists, or taken without a word.
enum class ConflictBehavior { block, warn, allow };

struct ConflictPolicy {
    // A shortcut of the program's own menu would no longer do what it does there.
    ConflictBehavior menuItem = ConflictBehavior::block;
    // The desktop's list may be older than its keys, and its user can change them.
    ConflictBehavior systemShortcut = ConflictBehavior::warn;
    // One that the system can't register.
    ConflictBehavior disallowed = ConflictBehavior::block;
};

}
