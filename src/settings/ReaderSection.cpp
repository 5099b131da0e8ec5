#include "settings/ReaderSection.h"

#include "reader/CheckRow.h"
#include "reader/Panes.h"
#include "settings/WheelGuard.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace Quillory {

ReaderSection::ReaderSection(LibraryStore& store, QWidget* parent)
    : SettingsSection(tr("Reader"), parent)
    , m_learningMode(new CheckRow(tr("Learning Mode"), card()))
    , m_textSize(new QSlider(Qt::Horizontal, card()))
    , m_keyNames(new QComboBox(card()))
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
    addKeyNames(store);
    connect(m_learningMode, &CheckRow::toggled, this, [&store](bool isOn) { store.setLearningModeEnabled(isOn); });
    connect(m_textSize, &QSlider::valueChanged, this, [&store](int size) { store.setTextSize(size); });
}

void ReaderSection::addKeyNames(LibraryStore& store)
{
    m_keyNames->setObjectName(QStringLiteral("keyNames"));
    m_keyNames->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_keyNames->addItem(tr("Symbols"));
    m_keyNames->addItem(tr("Words, such as Ctrl+Alt+Esc"));
    new WheelGuard(*m_keyNames);
    addRow(tr("Key names:"), m_keyNames);
    addText(tr("How structured sheets show, copy and speak keys. Search finds both."), Look::secondary);
    connect(m_keyNames, &QComboBox::activated, this,
        [&store](int index) { store.setKeyNames(index == 0 ? KeyNames::symbols : KeyNames::words); });
}

void ReaderSection::refresh(SettingsState const& state)
{
    m_learningMode->setChecked(state.learningModeEnabled);
    setHelp(*m_learningMode, state.learningModeHelp());
    QSignalBlocker const silent(m_textSize); // a stored size need not be a whole one
    m_textSize->setValue(qRound(state.textSize));
    m_textSizeLabel->setText(state.textSizeLabel());
    m_keyNames->setCurrentIndex(state.keyNames == KeyNames::symbols ? 0 : 1);
}

}
