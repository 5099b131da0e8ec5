#include "settings/GestureSection.h"

#include "reader/BarButton.h"
#include "reader/Panes.h"
#include "settings/Disclosure.h"
#include "settings/StatusLine.h"
#include "settings/WheelGuard.h"

#include <QComboBox>
#include <QLabel>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int padding = 10; // points
constexpr int gap = 4;

}

GestureSection::GestureSection(LibraryStore& store, Actions const& actions, QWidget* parent)
    : SettingsSection(tr("Double-tap to peek"), parent)
{
    m_whenPossible.append(addText(
        tr("Use Shift or Option on its own: tap twice and keep the second press held to see your last-viewed sheet. "
           "Your keyboard shortcuts above still work."),
        Look::secondary));
    addPicker(store);
    m_whenImpossible.append(
        addText(tr("This session shows a key only to the window that it is meant for, so Quillory can’t see you tap "
                   "while you use other apps."),
            Look::secondary));
    m_whenOff.append(
        addText(tr("Choose a gesture above to see the steps and set up access. Off keeps modifier gestures disabled."),
            Look::secondary));
    addHowTo();
    addAllowed();
    addSetup(actions);
    addTroubleshooting();
}

void GestureSection::addPicker(LibraryStore& store)
{
    m_picker = new QComboBox(card());
    m_picker->setObjectName(QStringLiteral("modifierPeekGesture"));
    m_picker->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (auto const gesture : allModifierGestures)
        m_picker->addItem(displayLabel(gesture));
    new WheelGuard(*m_picker);
    addRow(tr("Gesture:"), m_picker);
    connect(m_picker, &QComboBox::activated, this,
        [&store](int index) { store.setModifierGesture(allModifierGestures.at(static_cast<std::size_t>(index))); });
}

void GestureSection::addHowTo()
{
    auto* const box = new QWidget(card());
    makePane(*box, "box");
    auto* const rows = new QVBoxLayout(box);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(gap);
    auto* const heading = new QLabel(tr("How to use it"), box);
    heading->setObjectName(QStringLiteral("sectionTitle"));
    rows->addWidget(heading);
    constexpr int stepCount = 3;
    for (int step = 0; step < stepCount; ++step) {
        auto* const label = new QLabel(box);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        rows->addWidget(label);
        m_steps.append(label);
    }
    addRow(box);
    m_whenOn.append(box);
}

void GestureSection::addAllowed()
{
    auto* const status = new StatusLine(
        QStringLiteral("checkmark.circle"), tr("Keyboard monitoring is allowed"), card());
    addRow(status);
    auto* const note = addText(tr("Try the gesture in another app. Quillory stays visible while you hold the key and "
                                  "closes when you release it."),
        Look::secondary);
    m_whenAllowed = { status, note };
}

void GestureSection::addSetup(Actions const& actions)
{
    auto* const status = new StatusLine(
        QStringLiteral("exclamationmark.shield"), tr("Setup needed: allow Input Monitoring"), card());
    addRow(status);
    auto* const reason = addText(tr("macOS requires this to recognize the gesture while you use other apps. Quillory "
                                    "does not record what you type."),
        Look::secondary);
    auto* const setUp = makeButton(tr("Set Up Input Monitoring…"), actions.setUp);
    auto* const show = makeButton(tr("Show This Quillory App in Finder"), actions.showApplication);
    auto* const steps = addText(
        tr("Turn on Quillory in Privacy & Security → Input Monitoring. If it is missing, click + "
           "and select this Quillory app. Restart Quillory if macOS asks, then check access "
           "again."),
        Look::secondary);
    auto* const check = makeButton(tr("Check Access Again"), actions.checkAgain);
    m_whenSetupNeeded = { status, reason, setUp, show, steps, check };
}

QWidget* GestureSection::makeButton(QString const& text, std::function<void()> const& action)
{
    auto* const button = BarButton::withText(text, {}, BarButton::Look::framed, card());
    connect(button, &BarButton::clicked, this, action);
    addRow(button);
    return button;
}

void GestureSection::addTroubleshooting()
{
    auto* const disclosure = new Disclosure(tr("Timing and troubleshooting"),
        {
            tr("Make the first tap short (under 0.3 seconds). Press again within 0.3 seconds, then hold for at least "
               "0.35 seconds. Use the same physical key for both presses; either left or right works."),
            tr("Typing before the reader appears or pressing another modifier cancels the gesture. If another utility "
               "uses the same gesture, choose the other key or turn one gesture off."),
            tr("Existing Accessibility access also works. After replacing a local build, you may need to renew its "
               "permission. Quit other Quillory copies so you test the app you allowed."),
        },
        card());
    addRow(disclosure);
    m_whenOn.append(disclosure);
}

void GestureSection::refresh(SettingsState const& state)
{
    auto const index = std::ranges::find(allModifierGestures, state.modifierGesture) - allModifierGestures.begin();
    m_picker->setCurrentIndex(static_cast<int>(index));
    for (qsizetype step = 0; step < state.gestureSteps.size(); ++step)
        m_steps.at(step)->setText(state.gestureSteps.at(step));
    auto const show = [this](QList<QWidget*> const& rows, bool isVisible) {
        for (auto* const row : rows)
            row->setVisible(isVisible);
    };
    using enum SettingsState::Gesture;
    m_picker->setEnabled(state.gesture != impossible);
    show(m_whenPossible, state.gesture != impossible);
    show(m_whenImpossible, state.gesture == impossible);
    show(m_whenOff, state.gesture == off);
    show(m_whenOn, state.gesture == allowed || state.gesture == setupNeeded);
    show(m_whenAllowed, state.gesture == allowed);
    show(m_whenSetupNeeded, state.gesture == setupNeeded);
}

}
