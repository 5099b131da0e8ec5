#pragma once

#include <QWidget>

namespace Quillory {

// The program's name, and a button that closes the window. GUI thread only.
class TopBar : public QWidget {
    Q_OBJECT
public:
    explicit TopBar(QWidget* parent);
};

}
