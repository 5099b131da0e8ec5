#include "reader/TopBar.h"

#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace Quillory {

TopBar::TopBar(QWidget* parent)
    : QWidget(parent)
{
    makePane(*this, "chrome");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(14, 6, 6, 6);
    auto* const name = new QLabel(QStringLiteral("Quillory"), this);
    auto font = name->font();
    font.setWeight(QFont::DemiBold);
    name->setFont(font);
    row->addWidget(name, 1);
    auto* const close = makeCloseButton(this, tr("Close"));
    connect(close, &QToolButton::clicked, this, [this] { window()->close(); });
    row->addWidget(close);
}

}
