#include "presentation/PeekHold.h"

namespace Quillory {

namespace {

constexpr auto holding = ModifierFlags::shift | ModifierFlags::control | ModifierFlags::option | ModifierFlags::command;

}

PeekHold::PeekHold(Keys keys)
    : m_keyCode(keys.keyCode)
    , m_modifiers(keys.modifiers)
{
}

PeekHold::PeekHold(std::optional<ModifierFlags> held)
    : m_modifiers(held.value_or(ModifierFlags::none))
    , m_isTold(m_modifiers != ModifierFlags::none)
{
}

PeekHold::Verdict PeekHold::look(PeekKeys::Known const& known, Time now)
{
    if (known.keyIsDown && known.flags)
        return peekStillHeld(*known.keyIsDown, *known.flags, m_modifiers) ? Verdict::held : Verdict::letGo;
    return known.flags ? lookAt(*known.flags & holding, now) : lookWithoutKeyboard(now);
}

PeekHold::Verdict PeekHold::lookAt(ModifierFlags flags, Time now)
{
    m_lostSince.reset();
    if (!m_keyboardSince) {
        m_keyboardSince = now;
        return Verdict::held; // the first flags may be old
    }
    bool const isSettled = now - *m_keyboardSince >= settling;
    if (m_isTold) {
        m_wereSeen |= contains(flags, m_modifiers);
        return contains(flags, m_modifiers) || !(m_wereSeen || isSettled) ? Verdict::held : Verdict::letGo;
    }
    if (m_wereSeen && !contains(flags, m_modifiers))
        return Verdict::letGo;
    if (!isSettled && flags != ModifierFlags::none) {
        m_modifiers = flags;
        m_wereSeen = true;
    }
    return Verdict::held;
}

PeekHold::Verdict PeekHold::lookWithoutKeyboard(Time now)
{
    if (!m_keyboardSince)
        return Verdict::held; // it is still to come
    if (!m_lostSince)
        m_lostSince = now;
    return now - *m_lostSince < passing ? Verdict::held : Verdict::keyboardLost;
}

}
