#pragma once

#include "reader/text/CopyLook.h"
#include "textlayout/ColorSet.h"

#include <QAbstractButton>

namespace Quillory {

// The small button over a code block. A click on it leaves the keyboard with the text. GUI thread only.
class CodeCopyButton : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr QSize fixedSize { 30, 28 };

    // `tag` is the position of its target among the copy targets.
    CodeCopyButton(qsizetype tag, QString const& label, QWidget* parent);

    qsizetype tag() const { return m_tag; }
    bool copied() const { return m_copied; }
    // Takes over how it looks and what it says.
    void refresh(bool copied, bool learningModeEnabled, ColorSet const& colors);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    qsizetype m_tag;
    bool m_copied = false;
    ColorSet m_colors;
};

}
