#pragma once

#include <QStringList>
#include <QWidget>

namespace Quillory {

class BarButton;
class CheckRow;

// Lets the user pick which starter sheets to copy into the folder. Begins with the usual choice. GUI thread only.
class StarterSelectionView : public QWidget {
    Q_OBJECT
public:
    explicit StarterSelectionView(QWidget* parent);

    // In the order of the rows.
    QStringList selected() const;

Q_SIGNALS:
    void cancelled();
    void chosen(QStringList const& names);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeRows();
    QWidget* makeButtons();

    QList<CheckRow*> m_rows; // as StarterSheets has the names
    BarButton* m_install;
};

}
