#include "reader/EmptyState.h"

#include "reader/Panes.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Quillory {

EmptyState::EmptyState(LibraryStore& store, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_text(new QLabel(this))
    , m_chooseFolder(new QPushButton(tr("Choose folder"), this))
{
    auto* const rows = new QVBoxLayout(this);
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setWordWrap(true);
    setHelp(*m_chooseFolder, tr("Choose the folder containing your cheat sheets"));
    connect(m_chooseFolder, &QPushButton::clicked, this, [this] { m_store.chooseFolder(window()->winId()); });
    rows->addStretch();
    rows->addWidget(m_text);
    rows->addWidget(m_chooseFolder, 0, Qt::AlignHCenter);
    rows->addStretch();
}

void EmptyState::refresh(bool hasSheet)
{
    auto const hasFolder = m_store.folder.value().has_value();
    setVisible(!hasSheet);
    m_chooseFolder->setVisible(!hasFolder);
    // Whether a folder has sheets is known when it has been read.
    bool const isKnown = !hasFolder || !m_store.busy;
    m_text->setVisible(isKnown);
    if (!hasSheet && isKnown)
        m_text->setText(hasFolder
                ? tr("<h3>No cheat sheets</h3>Add top-level .md or .quillory.json files, or install starter sheets.")
                : tr("<h3>Your sheets, one click away</h3>Choose a folder to start. Your files stay yours."));
}

}
