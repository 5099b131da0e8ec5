#include "linux/x11/DefaultKeyMap.h"

#include "linux/x11/XkbSymbols.h"

namespace Quillory {

DefaultKeyMap::DefaultKeyMap()
{
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> const context(
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
    if (auto* const keymap = context ? xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)
                                     : nullptr)
        m_keymap.reset(keymap, xkb_keymap_unref);
}

std::optional<QString> DefaultKeyMap::symbolName(std::uint16_t keyCode) const
{
    return XkbSymbols::nameOfKey(m_keymap.get(), keyCode, 0);
}

}
