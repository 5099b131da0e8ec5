#include "reader/WarningBar.h"

#include "reader/WarningSign.h"

#include <QHBoxLayout>

namespace Quillory {

WarningBar::WarningBar(BannerLabel* text, char const* name, QWidget* parent)
    : QWidget(parent)
    , m_text(text)
{
    auto* const signAndText = new QWidget;
    m_text->setObjectName(QLatin1StringView(name));
    auto* const columns = new QHBoxLayout(signAndText);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(8);
    columns->addWidget(new WarningSign(this));
    columns->addWidget(m_text, 1);
    m_row = new BannerRow(signAndText, this);
    auto* const around = new QHBoxLayout(this);
    around->setContentsMargins(16, 5, 16, 5);
    around->addWidget(m_row);
    hide();
}

void WarningBar::show(QString const& text, QString const& tail)
{
    m_text->say(text, tail);
    setVisible(!text.isEmpty());
}

}
