#pragma once

#include "platform/Executor.h"
#include "reader/text/CodeBlock.h"
#include "textlayout/ColorSet.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace Quillory {

class CodeCopyButton;
class ReaderDocument;

// The copy buttons of the blocks in sight, each made when its block comes into view, and which target shows that it has
// just been copied. GUI thread only.
class CodeButtons {
public:
    // A button's target.
    std::function<void(qsizetype)> onClick;
    std::function<void()> onCopiedChanged;

    // View and executor outlive the buttons.
    CodeButtons(QWidget& view, Executor& executor);
    ~CodeButtons();
    Q_DISABLE_COPY_MOVE(CodeButtons)

    // Another text is shown: all buttons go, and nothing is copied.
    void clear();
    // One button for each block; `origin` is the place of the content at the view's top left corner.
    void layOut(std::vector<CodeBlock> const& blocks, ReaderDocument const& document, QPointF origin);
    void setLook(bool learningModeEnabled, ColorSet const& colors);
    // For the time of the feedback.
    void showCopied(qsizetype target);
    void showNoneCopied();

    // In the order of the text.
    std::vector<CodeCopyButton*> const& inSight() const { return m_buttons; }
    std::optional<qsizetype> copied() const { return m_copied; }

private:
    CodeCopyButton* makeButton(qsizetype target, QString const& text);
    void setCopied(std::optional<qsizetype> target);
    void refresh(CodeCopyButton& button) const;
    void drop(std::vector<CodeCopyButton*> const& buttons);

    QWidget& m_view;
    Executor& m_executor;
    std::vector<CodeCopyButton*> m_buttons;
    bool m_learningModeEnabled = false;
    ColorSet m_colors;
    std::optional<qsizetype> m_copied;
    Registration m_feedbackTask;
};

}
