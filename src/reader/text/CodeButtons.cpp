#include "reader/text/CodeButtons.h"

#include "platform/Clipboard.h"
#include "reader/text/CodeCopyButton.h"
#include "reader/text/ReaderDocument.h"

#include <algorithm>

namespace Quillory {

CodeButtons::CodeButtons(QWidget& view, Executor& executor)
    : m_view(view)
    , m_executor(executor)
    , m_colors(ColorSet::fromPalette(view.palette()))
{
}

CodeButtons::~CodeButtons() = default;

void CodeButtons::drop(std::vector<CodeCopyButton*> const& buttons)
{
    for (auto* const button : buttons) {
        if (button->hasFocus())
            m_view.setFocus(); // the toolkit would go on to whatever follows
        button->hide();
        button->deleteLater(); // a click on it may be going on
    }
}

void CodeButtons::clear()
{
    m_feedbackTask.end();
    m_copied.reset();
    drop(std::exchange(m_buttons, {}));
}

void CodeButtons::layOut(std::vector<CodeBlock> const& blocks, ReaderDocument const& document, QPointF origin)
{
    auto old = std::exchange(m_buttons, {});
    for (auto const& [target, rectangle] : blocks) {
        auto const known = std::ranges::find(old, target, &CodeCopyButton::tag);
        auto* const button = known == old.end() ? makeButton(target, document.target(target).text) : *known;
        if (known != old.end())
            old.erase(known);
        refresh(*button);
        button->move(CodeBlock::buttonCorner(m_view.width(), rectangle.top() - origin.y()));
        button->show();
        m_buttons.push_back(button);
    }
    drop(old);
}

CodeCopyButton* CodeButtons::makeButton(qsizetype target, QString const& text)
{
    auto* const button = new CodeCopyButton(target, text, &m_view);
    QObject::connect(button, &CodeCopyButton::clicked, &m_view, [this, target] { onClick(target); });
    return button;
}

void CodeButtons::setLook(bool learningModeEnabled, ColorSet const& colors)
{
    m_learningModeEnabled = learningModeEnabled;
    m_colors = colors;
    for (auto* const button : m_buttons)
        refresh(*button);
}

void CodeButtons::refresh(CodeCopyButton& button) const
{
    button.refresh(m_copied == button.tag(), m_learningModeEnabled, m_colors);
}

void CodeButtons::showCopied(qsizetype target)
{
    setCopied(target);
    m_feedbackTask = m_executor.after(Clipboard::feedbackTime, [this] { showNoneCopied(); });
}

void CodeButtons::showNoneCopied()
{
    setCopied({});
}

void CodeButtons::setCopied(std::optional<qsizetype> target)
{
    m_feedbackTask.end();
    m_copied = target;
    for (auto* const button : m_buttons)
        refresh(*button);
    onCopiedChanged();
}

}
