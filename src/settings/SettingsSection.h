#pragma once

#include <QWidget>

class QGridLayout;
class QLabel;

namespace Quillory {

// One group of the settings: a title over a card with rows. Labels stand in a column before their controls, or over
// them where there is no room. GUI thread only.
class SettingsSection : public QWidget {
    Q_OBJECT
public:
    enum class Look { plain, secondary, warning };

    SettingsSection(QString const& title, QWidget* parent);

    // A text over the whole width.
    QLabel* addText(QString const& text, Look look = Look::plain);
    // Less important text under the control of the row above.
    QLabel* addNote(QString const& text);
    QLabel* addRow(QString const& label, QWidget* control);
    void addRow(QWidget* control);

    // With labels over their controls, as it stands when it is narrow.
    QSize minimumSizeHint() const override;

    // The parent of what is added.
    QWidget* card() { return m_card; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Row {
        QLabel* label = nullptr; // over or before the control
        QWidget* control = nullptr;
        bool isIndented = false; // where there are two columns
    };

    void add(Row const& row);
    void layOut();
    bool hasTwoColumns() const;

    QWidget* m_card;
    QGridLayout* m_grid;
    QList<Row> m_rows;
    bool m_isInColumns = true;
};

}
