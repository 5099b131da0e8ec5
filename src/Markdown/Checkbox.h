#pragma once

namespace Quillory::Markup {

// The box of a task list item.
enum class Checkbox { checked, unchecked };

}
