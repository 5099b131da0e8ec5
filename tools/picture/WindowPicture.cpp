#include "WindowPicture.h"

#include <QApplication>
#include <QEnterEvent>
#include <QFile>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <chrono>

namespace Quillory {

WindowPicture::WindowPicture(QString const& folder, QSize size)
    : m_folder(folder)
{
    m_view.resize(size);
    m_view.show();
    m_view.activateWindow();
    if (!folder.isEmpty())
        m_store.connect(folder);
    settle();
    m_view.takeKeyboard();
}

void WindowPicture::settle()
{
    QCoreApplication::processEvents();
    do
        m_services.executor.settle();
    while (m_services.executor.runAndFinishWork());
    QCoreApplication::processEvents();
}

QWidget* WindowPicture::find(QString const& name) const
{
    auto const all = m_view.findChildren<QWidget*>();
    auto const found = std::ranges::find_if(all, [&](QWidget const* widget) {
        auto const* const label = qobject_cast<QLabel const*>(widget);
        return widget->isVisible() && (widget->accessibleName() == name || (label && label->text() == name));
    });
    return found == all.end() ? nullptr : *found;
}

std::expected<void, QString> WindowPicture::take(QString const& step)
{
    auto const verb = step.section(u' ', 0, 0), object = step.section(u' ', 1);
    if (verb == u"press" || verb == u"hover") {
        auto* const widget = find(object);
        if (!widget)
            return std::unexpected(QStringLiteral("Nothing in sight is called \"%1\".").arg(object));
        verb == u"press" ? static_cast<void>(QMetaObject::invokeMethod(widget, "click")) : rest(*widget);
    } else if (verb == u"key") {
        press(object);
    } else if (verb == u"type") {
        for (auto const character : object)
            press(character);
    } else if (verb == u"select") {
        m_store.select(object);
    } else if (verb == u"say") {
        m_store.message.assignAs<MessageBar>(object);
    } else if (verb == u"choose") {
        choose(object.toInt());
    } else if (verb == u"write") {
        write(object.section(u' ', 0, 0), object.section(u' ', 1));
    } else {
        return std::unexpected(QStringLiteral("There is no step \"%1\".").arg(step));
    }
    settle();
    return {};
}

void WindowPicture::press(QString const& keys)
{
    auto const key = QKeySequence(keys)[0];
    auto* const popup = QApplication::activePopupWidget();
    auto* const focused = m_view.focusWidget();
    QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers(), keys.size() == 1 ? keys : QString());
    QCoreApplication::sendEvent(popup ? popup : focused ? focused : &m_view, &event);
}

void WindowPicture::rest(QWidget& widget)
{
    QEnterEvent enter(widget.rect().center(), widget.rect().center(), widget.mapToGlobal(widget.rect().center()));
    widget.setAttribute(Qt::WA_UnderMouse);
    QCoreApplication::sendEvent(&widget, &enter);
    m_services.executor.advance(std::chrono::seconds(1));
}

void WindowPicture::choose(int row)
{
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu || row >= menu->actions().size())
        return;
    menu->setActiveAction(menu->actions().at(row));
    m_services.executor.advance(std::chrono::seconds(1));
}

void WindowPicture::write(QString const& file, QString const& text)
{
    QFile saved(m_folder + u'/' + file);
    if (saved.open(QIODevice::WriteOnly))
        saved.write(text.toUtf8());
    saved.close();
    m_store.reload();
}

QImage WindowPicture::draw() const
{
    auto const scale = m_view.devicePixelRatioF();
    auto const all = QApplication::topLevelWidgets();
    QRect reach(m_view.mapToGlobal(QPoint()), m_view.size());
    for (auto const* const window : all) {
        if (window->isVisible())
            reach |= window->geometry();
    }
    QImage picture(reach.size() * scale, QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::gray);
    QPainter painter(&picture);
    auto const add = [&](QWidget const& widget) {
        painter.drawPixmap(widget.mapToGlobal(QPoint()) - reach.topLeft(), const_cast<QWidget&>(widget).grab());
    };
    add(m_view);
    for (auto const* const window : all) {
        if (window->isVisible() && window != &m_view)
            add(*window);
    }
    return picture;
}

}
