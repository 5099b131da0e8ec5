#include "reader/text/CodeButtonAccessible.h"

#include "reader/text/CopyLook.h"
#include "reader/text/ReaderTextView.h"

namespace Quillory {

CodeButtonAccessible::CodeButtonAccessible(ReaderTextView* view, qsizetype target)
    : m_view(view)
    , m_target(target)
{
}

bool CodeButtonAccessible::isValid() const
{
    return m_view && m_target < std::ssize(m_view->rendered().copyTargets);
}

void* CodeButtonAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QAccessibleInterface* CodeButtonAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(m_view.data());
}

QString CodeButtonAccessible::text(QAccessible::Text type) const
{
    if (!isValid())
        return {};
    auto const look = CopyLook::of(m_view->copiedTarget() == m_target, m_view->learningModeEnabled());
    switch (type) {
    case QAccessible::Name:
        return CopyLook::label(
            m_view->rendered().copyTargets[static_cast<std::size_t>(m_target)].text, CopyLook::spokenCharacters);
    case QAccessible::Description:
    case QAccessible::Help:
        return look.help;
    case QAccessible::Value:
        return look.value;
    default:
        return {};
    }
}

QRect CodeButtonAccessible::rect() const
{
    if (!isValid())
        return {};
    auto const top = m_view->blockRectangle(m_target).top() - m_view->scrollOrigin().y();
    return { m_view->mapToGlobal(CodeBlock::buttonCorner(m_view->width(), top)), CodeCopyButton::fixedSize };
}

QAccessible::State CodeButtonAccessible::state() const
{
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    state.disabled = m_view->learningModeEnabled();
    auto const area = QRect(m_view->mapToGlobal(QPoint()), m_view->size());
    state.offscreen = !m_view->isVisible() || !area.intersects(rect());
    state.invisible = !m_view->isVisible();
    return state;
}

QStringList CodeButtonAccessible::actionNames() const
{
    return isValid() && !m_view->learningModeEnabled() ? QStringList { pressAction() } : QStringList();
}

void CodeButtonAccessible::doAction(QString const& name)
{
    if (name == pressAction() && isValid())
        m_view->copyTarget(m_target);
}

}
