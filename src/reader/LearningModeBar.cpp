#include "reader/LearningModeBar.h"

#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QStyle>

namespace Quillory {

LearningModeBar::LearningModeBar(Announcements& announcements, QWidget* parent)
    : QWidget(parent)
    , m_text(new BannerLabel(announcements, this))
{
    makePane(*this, "learningModeExplanation");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 5, 16, 5);
    row->addWidget(m_text);
}

void LearningModeBar::refresh(ReaderWindowState const& state)
{
    auto const isOn = state.learningModeEnabled;
    auto const shown = property("isOn");
    if (shown == isOn)
        return;
    auto const text = isOn
        ? tr("Learning Mode is on. Copying is disabled—type commands in your terminal or editor to practise.")
        : tr("Copy commands for work, or turn on Learning Mode to practise typing them yourself.");
    shown.isValid() ? m_text->say(text) : m_text->setText(text); // news only once it changes
    setProperty("isOn", isOn);                                   // ReaderStyle has a ground for it
    style()->polish(this);
}

}
