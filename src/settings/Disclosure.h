#pragma once

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace Quillory {

class BarButton;

// Texts below a button that shows and hides them. GUI thread only.
class Disclosure : public QWidget {
    Q_OBJECT
public:
    Disclosure(QString const& title, QStringList const& texts, QWidget* parent);

    bool isOpen() const;
    void setOpen(bool isOpen);

private:
    BarButton* m_button;
    QWidget* m_content;
};

}
