#include "SettingsPicture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLayout>
#include <QScrollArea>

#include <algorithm>

namespace Quillory {

SettingsPicture::SettingsPicture(QString const& folder)
{
    if (!folder.isEmpty())
        m_desk.store.connect(folder);
    m_desk.services.executor.settle();
    m_window->bringToFront();
}

std::expected<void, QString> SettingsPicture::take(QString const& step)
{
    auto const verb = step.section(u' ', 0, 0), object = step.section(u' ', 1);
    auto& store = m_desk.store;
    if (verb == u"press") {
        auto const buttons = m_window->findChildren<QAbstractButton*>();
        auto const found = std::ranges::find_if(
            buttons, [&](auto* each) { return each->accessibleName() == object || each->text() == object; });
        if (found == buttons.end())
            return std::unexpected(QStringLiteral("No button is called \"%1\".").arg(object));
        (*found)->click();
    } else if (verb == u"gesture") {
        store.setModifierGesture(modifierGestureFromRawValue(object).value_or(ModifierGesture::off));
    } else if (verb == u"allow") {
        store.gesturePermissionGranted.assignAs<PresentationCoordinator>(true);
    } else if (verb == u"shortcuts") {
        for (auto const& name : { ShortcutName::toggleQuillory(), ShortcutName::peekQuillory() })
            m_desk.line.shortcuts.setShortcut(Shortcut { 40, 6144 }, name);
    } else if (verb == u"wayland") {
        becomeWayland(object);
    } else if (verb == u"pin") {
        store.togglePin(object);
    } else {
        return std::unexpected(QStringLiteral("There is no step \"%1\".").arg(step));
    }
    m_desk.services.executor.settle();
    return {};
}

void SettingsPicture::becomeWayland(QString const& binding)
{
    using enum DesktopHotKeys::State;
    m_desk.hasDesktopHotKeys = true;
    m_desk.permission.isPossible = false;
    m_window = std::make_unique<SettingsWindow>(m_desk.settings());
    m_window->bringToFront();
    m_desk.line.shortcuts.setShortcut(Shortcut { 40, 6144 }, ShortcutName::toggleQuillory());
    auto const state = binding.section(u' ', 0, 0);
    m_desk.desktopHotKeys.become(state == u"bound" ? bound
            : state == u"refused"                  ? refused
                                                   : unavailable,
        { { ShortcutName::toggleQuillory().rawValue, binding.section(u' ', 1) } });
}

QImage SettingsPicture::draw(QSize size)
{
    size.setWidth(std::max(size.width(), m_window->minimumWidth()));
    m_window->resize(size.width(), std::max(size.height(), m_window->minimumHeight()));
    QCoreApplication::processEvents();
    auto* const content = m_window->findChild<QScrollArea*>()->widget();
    if (size.height() == 0)
        m_window->resize(size.width(), content->layout()->totalHeightForWidth(size.width()));
    QCoreApplication::processEvents();
    return m_window->grab().toImage();
}

}
