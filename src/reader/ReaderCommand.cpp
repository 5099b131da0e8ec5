#include "reader/ReaderCommand.h"

#include <Qt>

namespace Quillory {

std::optional<ReaderCommand> readerCommandOf(int key, ModifierFlags modifiers)
{
    using enum ReaderCommand;
    if (key == Qt::Key_Escape)
        return dismiss;
    auto const isCommand = [](ModifierFlags flags) {
        return flags == ModifierFlags::command || flags == ModifierFlags::control;
    };
    // Many keyboards have the plus over another character.
    auto const shift = static_cast<std::uint32_t>(ModifierFlags::shift);
    auto const unshifted = static_cast<ModifierFlags>(static_cast<std::uint32_t>(modifiers) & ~shift);
    if (key == Qt::Key_Plus || key == Qt::Key_Equal)
        return isCommand(unshifted) ? std::optional(largerText) : std::nullopt;
    if (!isCommand(modifiers))
        return std::nullopt;
    switch (key) {
    case Qt::Key_K:
        return searchLibrary;
    case Qt::Key_F:
        return find;
    case Qt::Key_R:
        return refresh;
    case Qt::Key_Q:
        return quit;
    case Qt::Key_Minus:
        return smallerText;
    case Qt::Key_0:
        return usualText;
    default:
        return std::nullopt;
    }
}

}
