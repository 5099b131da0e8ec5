#include "reader/StarterSelectionView.h"

#include "library/StarterSheets.h"
#include "reader/BarButton.h"
#include "reader/CheckRow.h"
#include "reader/Panes.h"
#include "text/Capitalized.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int padding = 20; // points
constexpr int rowSpacing = 2;

QString spokenName(QString const& name)
{
    return name == QLatin1StringView("pandas") ? name : capitalized(name);
}

// As high as its rows where there is room, else they scroll.
class Rows : public QScrollArea {
public:
    using QScrollArea::QScrollArea;

    QSize sizeHint() const override
    {
        return widget()->sizeHint() + QSize(2 * frameWidth() + padding, 2 * frameWidth());
    }
    QSize minimumSizeHint() const override { return { sizeHint().width(), 0 }; }
};

}

StarterSelectionView::StarterSelectionView(QWidget* parent)
    : QWidget(parent)
{
    makePane(*this, "card");
    setAccessibleName(tr("Offline starter sheets"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(padding, padding, padding, padding);
    auto* const title = new QLabel(tr("Offline starter sheets"), this);
    title->setObjectName(QStringLiteral("large"));
    rows->addWidget(title);
    auto* const subtitle = new QLabel(tr("Choose what to add. Existing files are always skipped."), this);
    subtitle->setObjectName(QStringLiteral("secondary"));
    subtitle->setWordWrap(true);
    rows->addWidget(subtitle);
    rows->addWidget(makeRows(), 1);
    rows->addWidget(makeButtons());
    setFocusProxy(m_rows.first());
}

QWidget* StarterSelectionView::makeRows()
{
    auto* const area = new Rows(this);
    auto* const content = new QWidget(area);
    content->setObjectName(QStringLiteral("cardRows"));
    auto* const rows = new QVBoxLayout(content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(rowSpacing);
    auto const usual = StarterSheets::selectedByDefault();
    for (auto const& name : StarterSheets::names()) {
        auto* const row = new CheckRow(StarterSheets::label(name), content);
        row->setChecked(usual.contains(name));
        setHelp(*row, tr("Include the %1 starter sheet when installing").arg(spokenName(name)));
        connect(row, &CheckRow::toggled, this, [this] { m_install->setEnabled(!selected().isEmpty()); });
        rows->addWidget(row);
        m_rows.append(row);
    }
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return area;
}

QWidget* StarterSelectionView::makeButtons()
{
    auto* const buttons = new QWidget(this);
    auto* const row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    using enum BarButton::Look;
    auto* const cancel = BarButton::withText(
        tr("Cancel"), tr("Close without installing starter sheets"), framed, buttons);
    m_install = BarButton::withText(
        tr("Install selected"), tr("Add selected starter sheets; existing files are skipped"), prominent, buttons);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(m_install);
    connect(cancel, &BarButton::clicked, this, &StarterSelectionView::cancelled);
    connect(m_install, &BarButton::clicked, this, [this] { Q_EMIT chosen(selected()); });
    return buttons;
}

QStringList StarterSelectionView::selected() const
{
    QStringList names;
    auto const all = StarterSheets::names();
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row)->isChecked())
            names.append(all.at(row));
    }
    return names;
}

// Return in a row is the prominent button's.
void StarterSelectionView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_install->click();
    else if (event->key() == Qt::Key_Escape)
        Q_EMIT cancelled();
    else
        QWidget::keyPressEvent(event);
}

}
