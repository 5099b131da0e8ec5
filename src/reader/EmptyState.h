#pragma once

#include "reader/ReaderWindowState.h"

#include <QWidget>

#include <functional>

class QLabel;

namespace Quillory {

class BarButton;

// Stands in the place of a sheet while there is none, with the ways to one, and how the reader is called. GUI thread only.
class EmptyState : public QWidget {
    Q_OBJECT
public:
    // `howToCall` gives a sentence for each shortcut.
    EmptyState(std::function<QStringList()> howToCall, QWidget* parent);

    // Hidden while a sheet is shown.
    void refresh(ReaderWindowState const& state);

    // Of the buttons alone.
    int leastHeight() const;

    // Puts the keyboard on the first button.
    void takeKeyboard();

Q_SIGNALS:
    void chooseFolder();
    void installStarters();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void leaveOutWhatHasNoRoom();

    std::function<QStringList()> m_howToCall;
    QWidget* m_content;
    QWidget* m_symbol;
    QLabel* m_title;
    QLabel* m_text;
    QLabel* m_calls;
    BarButton* m_chooseFolder;
    BarButton* m_install;
};

}
