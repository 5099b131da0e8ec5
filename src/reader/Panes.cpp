#include "reader/Panes.h"

#include "presentation/hover_help/HoverHelp.h"
#include "reader/BarButton.h"

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
    hoverHelp(widget, text);
}

BarButton* makeCloseButton(QWidget* parent, QString const& label, QString const& help)
{
    return new BarButton(QStringLiteral("xmark"), label, help, parent);
}

}
