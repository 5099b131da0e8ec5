#pragma once

namespace Quillory {

// What the user asked all programs for; without a preference the desktop's palette says it.
enum class PreferredAppearance { none, dark, light };

}
