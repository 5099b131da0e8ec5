#include "reader/LearningModeBar.h"

#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QStyle>

namespace Quillory {

LearningModeBar::LearningModeBar(QWidget* parent)
    : QWidget(parent)
    , m_text(new BannerLabel(this))
{
    makePane(*this, "learningModeExplanation");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 5, 16, 5);
    row->addWidget(m_text);
}

void LearningModeBar::refresh(ReaderWindowState const& state)
{
    auto const isOn = state.learningModeEnabled;
    m_text->say(isOn ? tr("Learning Mode is on. Copying is disabled—type commands in your terminal or editor to "
                          "practise.")
                     : tr("Copy commands for work, or turn on Learning Mode to practise typing them yourself."));
    if (property("isOn") == isOn)
        return;
    setProperty("isOn", isOn); // ReaderStyle has a ground for it
    style()->polish(this);
}

}
