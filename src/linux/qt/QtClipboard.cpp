#include "linux/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>

namespace Quillory {

namespace {

QString const plainText = QStringLiteral("text/plain");

class OfferedText final : public QMimeData {
public:
    explicit OfferedText(std::function<QString()> text)
        : m_text(std::move(text))
    {
    }

    QStringList formats() const override { return { plainText }; }
    bool hasFormat(QString const& type) const override { return type == plainText; }

protected:
    QVariant retrieveData(QString const& type, QMetaType) const override
    {
        return type == plainText ? QVariant(m_text()) : QVariant();
    }

private:
    std::function<QString()> m_text;
};

QClipboard::Mode modeOf(Clipboard::Pasteboard pasteboard)
{
    return pasteboard == Clipboard::Pasteboard::selection ? QClipboard::Selection : QClipboard::Clipboard;
}

// The toolkit takes the ownership as of its latest event, and the server ignores that when another program has copied
// since. A change of a property that changes nothing brings an event of now.
void bringEventOfNow()
{
    auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    auto const windows = QGuiApplication::topLevelWindows();
    auto const window = std::ranges::find_if(windows, [](QWindow const* each) { return each->handle() != nullptr; });
    if (!x11 || window == windows.end())
        return;
    auto* const connection = x11->connection();
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>((*window)->winId()),
        XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, 8, 0, nullptr);
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr)); // it is there by now
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool isMissing(Clipboard::Pasteboard pasteboard)
{
    return pasteboard == Clipboard::Pasteboard::selection && !QGuiApplication::clipboard()->supportsSelection();
}

}

bool QtClipboard::setText(Pasteboard pasteboard, QString const& text)
{
    if (isMissing(pasteboard))
        return false;
    // The toolkit only warns when another program keeps the ownership. By content: a clipboard manager may have taken it
    // over meanwhile, with our text.
    auto const take = [&] {
        QGuiApplication::clipboard()->setText(text, modeOf(pasteboard));
        return this->text(pasteboard) == text;
    };
    if (take())
        return true;
    bringEventOfNow();
    return take();
}

bool QtClipboard::offerText(Pasteboard pasteboard, std::function<QString()> text)
{
    if (isMissing(pasteboard))
        return false;
    QGuiApplication::clipboard()->setMimeData(new OfferedText(std::move(text)), modeOf(pasteboard));
    return true;
}

QString QtClipboard::text(Pasteboard pasteboard) const
{
    return isMissing(pasteboard) ? QString() : QGuiApplication::clipboard()->text(modeOf(pasteboard));
}

}
