#include "settings/ReaderSection.h"

#include "reader/CheckRow.h"
#include "reader/Panes.h"
#include "settings/WheelGuard.h"

#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace Quillory {

ReaderSection::ReaderSection(LibraryStore& store, QWidget* parent)
    : SettingsSection(tr("Reader"), parent)
    , m_learningMode(new CheckRow(tr("Learning Mode"), card()))
    , m_textSize(new QSlider(Qt::Horizontal, card()))
{
    m_learningMode->setObjectName(QStringLiteral("learningModeToggle"));
    addRow(m_learningMode);
    addText(tr("Disable copying from all sheets to practise typing commands. Remembered across restarts; turn off any "
               "time to copy again."),
        Look::secondary);
    m_textSize->setAccessibleName(tr("Text size"));
    m_textSize->setRange(
        static_cast<int>(Preferences::minimumTextSize), static_cast<int>(Preferences::maximumTextSize));
    m_textSize->setPageStep(1);
    new WheelGuard(*m_textSize);
    m_textSizeLabel = addRow(QStringLiteral(" "), m_textSize);
    addText(tr("The reader opens in a floating window and remembers its size and position. Peek keeps it visible while "
               "held and hides it on release, even if it was already open."),
        Look::secondary);
    connect(m_learningMode, &CheckRow::toggled, this, [&store](bool isOn) { store.setLearningModeEnabled(isOn); });
    connect(m_textSize, &QSlider::valueChanged, this, [&store](int size) { store.setTextSize(size); });
}

void ReaderSection::refresh(SettingsState const& state)
{
    m_learningMode->setChecked(state.learningModeEnabled);
    setHelp(*m_learningMode, state.learningModeHelp());
    QSignalBlocker const silent(m_textSize); // a stored size need not be a whole one
    m_textSize->setValue(qRound(state.textSize));
    m_textSizeLabel->setText(state.textSizeLabel());
}

}
