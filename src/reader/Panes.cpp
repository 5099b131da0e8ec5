#include "reader/Panes.h"

#include <QToolButton>

namespace Quillory {

void makePane(QWidget& widget, char const* name)
{
    widget.setObjectName(QLatin1StringView(name));
    widget.setAttribute(Qt::WA_StyledBackground);
}

QWidget* makeSeparator(QWidget* parent)
{
    auto* const separator = new QWidget(parent);
    makePane(*separator, "separator");
    return separator;
}

void setHelp(QWidget& widget, QString const& text)
{
    widget.setToolTip(text);
}

QToolButton* makeCloseButton(QWidget* parent, QString const& label)
{
    auto* const button = new QToolButton(parent);
    button->setText(QStringLiteral("✕"));
    button->setAccessibleName(label);
    setHelp(*button, label);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

}
