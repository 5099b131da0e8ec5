#include "KeyboardShortcuts/recorder/Recorder.h"

#include "KeyboardShortcuts/SpecialKey.h"
#include "reader/BarButton.h"

#include <QApplication>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>

#include <algorithm>
#include <chrono>
#include <utility>

namespace Quillory {

namespace {

constexpr int leastWidth = 180; // points, as all that follows
constexpr int leastHeight = 32;
constexpr int padding = 12;
constexpr int tolerance = 3; // around the field, within which a click is on it

// A field that is left alone must not keep the keyboard from a screen that locks itself.
constexpr std::chrono::seconds longestGrab { 30 };

}

Recorder::Recorder(Services services, ShortcutName const& name, QString const& label, QWidget* parent)
    : QLineEdit(parent)
    , m_services(std::move(services))
    , m_label(label)
    , m_clear(
          new BarButton(QStringLiteral("xmark"), tr("Clear shortcut: %1").arg(label), tr("Remove this shortcut"), this))
    , m_steps(m_services.steps, name, *this)
{
    setReadOnly(true);
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setCursor(Qt::PointingHandCursor);
    // Keys are wanted as they are struck, not what an input method composes of them.
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setAccessibleName(tr("Record shortcut: %1").arg(label));
    setTextMargins(0, 0, BarButton::side, 0);
    connect(m_clear, &BarButton::clicked, this, [this] { m_steps.clear(); });
    m_clear->setCursor(Qt::ArrowCursor);
    m_longestGrab.setSingleShot(true);
    m_longestGrab.setInterval(longestGrab);
    m_longestGrab.callOnTimeout(this, &Recorder::letKeyboardGo);
    refresh();
}

QSize Recorder::sizeHint() const
{
    return { std::max(leastWidth, 20 * fontMetrics().averageCharWidth() + BarButton::side),
        std::max(leastHeight, fontMetrics().height() + padding) };
}

void Recorder::refresh()
{
    setText(m_steps.stringValue());
    setPlaceholderText(m_steps.placeholder());
    setAccessibleDescription(m_steps.isRecording() ? m_steps.placeholder() : QString());
    m_clear->setVisible(!text().isEmpty());
}

// Grabs of other programs end in nothing while this program has the whole keyboard.
void Recorder::startMonitor()
{
    QApplication::instance()->installEventFilter(this);
    m_held.reset();
    m_monitor = m_services.keyStrokes.observe([this](KeyStroke const& stroke) { return take(stroke); });
    grabKeyboard();
    m_longestGrab.start();
}

void Recorder::stopMonitor()
{
    QApplication::instance()->removeEventFilter(this);
    if (!m_held || m_isLeavingByTab)
        letKeyboardGo();
}

void Recorder::letKeyboardGo()
{
    m_held.reset();
    m_monitor.end();
    m_longestGrab.stop();
    if (keyboardGrabber() == this)
        releaseKeyboard();
}

void Recorder::giveUpFocus()
{
    if (hasFocus() && !m_isLeavingByTab)
        clearFocus();
}

void Recorder::takeFocus()
{
    m_isWanted = true;
    setFocus(Qt::OtherFocusReason);
}

void Recorder::beep()
{
    QApplication::beep();
}

void Recorder::showAlert(Alert const& alert)
{
    letKeyboardGo();
    auto* const box = new QMessageBox(QMessageBox::NoIcon, {}, alert.message, QMessageBox::NoButton, window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QStringLiteral("Quillory"));
    box->setInformativeText(alert.informativeText);
    box->setWindowModality(Qt::WindowModal);
    auto* const okButton = box->addButton(tr("OK"), QMessageBox::RejectRole);
    box->setDefaultButton(okButton);
    QAbstractButton* const forceButton = alert.buttons == Alert::Buttons::okAndForce
        ? box->addButton(tr("Use anyway"), QMessageBox::AcceptRole)
        : nullptr;
    connect(box, &QDialog::finished, this, [this, box, forceButton] {
        using enum RecorderSteps::AlertAnswer;
        m_steps.alertClosed(forceButton && box->clickedButton() == forceButton ? force : refuse);
    });
    box->open();
}

KeyStrokes::Answer Recorder::take(KeyStroke const& stroke)
{
    if (stroke.phase == KeyStroke::Phase::down)
        return takeDown(stroke);
    // A key that repeats goes up without being let go.
    bool const isUp = m_held && m_held == stroke.keyCode && !m_services.keys.keyIsDown(*m_held);
    if (isUp)
        m_held.reset();
    if (!m_held && !m_steps.isRecording())
        letKeyboardGo();
    return KeyStrokes::Answer::swallow;
}

KeyStrokes::Answer Recorder::takeDown(KeyStroke const& stroke)
{
    bool const isRepeat = m_held && m_held == stroke.keyCode;
    if (isRepeat || !m_steps.isRecording())
        return KeyStrokes::Answer::swallow;
    m_longestGrab.start();
    if (stroke.kind == KeyStroke::Kind::key)
        m_held = stroke.keyCode;
    m_isLeavingByTab = stroke.keyCode == SpecialKeys::code(SpecialKey::tab);
    auto const answer = m_steps.keyWentDown(stroke);
    m_isLeavingByTab = false;
    return answer;
}

void Recorder::leaveWindow()
{
    m_steps.windowDidResignKey();
    letKeyboardGo();
}

// Of its window, and of the whole program while it records.
bool Recorder::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == window() && event->type() == QEvent::WindowActivate) {
        m_steps.windowDidBecomeKey();
    } else if (watched == window() && event->type() == QEvent::WindowDeactivate) {
        leaveWindow();
    } else if (event->type() == QEvent::MouseButtonRelease && watched->isWindowType()) {
        auto const point = mapFromGlobal(static_cast<QMouseEvent&>(*event).globalPosition().toPoint());
        bool const isInside = rect().adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(point);
        m_steps.mouseWentUp(isInside ? RecorderSteps::Where::inside : RecorderSteps::Where::outside);
    }
    return QLineEdit::eventFilter(watched, event);
}

void Recorder::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton)
        takeFocus();
}

// A window that comes to the front gives the keyboard back to whoever had it last, which nobody has asked for.
void Recorder::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    bool const isUsersWish = std::exchange(m_isWanted, false) || event->reason() != Qt::ActiveWindowFocusReason;
    if (!isUsersWish || !m_steps.focusGained())
        clearFocus();
}

void Recorder::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    m_steps.focusLost();
}

void Recorder::showEvent(QShowEvent* event)
{
    QLineEdit::showEvent(event);
    if (isActiveWindow())
        m_steps.windowDidBecomeKey();
    window()->installEventFilter(this);
}

void Recorder::hideEvent(QHideEvent* event)
{
    window()->removeEventFilter(this);
    leaveWindow();
    QLineEdit::hideEvent(event);
}

void Recorder::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    placeClearButton();
}

void Recorder::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}

void Recorder::placeClearButton()
{
    auto const side = BarButton::side;
    m_clear->setGeometry(width() - side - 2, (height() - side) / 2, side, side);
}

}
