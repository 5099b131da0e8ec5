#include "reader/EmptyState.h"

#include "reader/BarButton.h"
#include "textlayout/SymbolPainting.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int symbolSide = 48; // points, as all that follows
constexpr int gap = 16;
constexpr int smallGap = 6;

class DocumentSymbol : public QWidget {
public:
    explicit DocumentSymbol(QWidget* parent)
        : QWidget(parent)
    {
        setFixedSize(symbolSide, symbolSide);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, QStringLiteral("doc.text"), rect(), palette().color(QPalette::PlaceholderText));
    }
};

QLabel* makeLabel(char const* name, QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setObjectName(QLatin1StringView(name));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

}

EmptyState::EmptyState(std::function<QStringList()> howToCall, QWidget* parent)
    : QWidget(parent)
    , m_howToCall(std::move(howToCall))
    , m_content(new QWidget(this))
    , m_symbol(new DocumentSymbol(m_content))
    , m_title(makeLabel("large", m_content))
    , m_text(makeLabel("emptyText", m_content))
    , m_calls(makeLabel("secondary", m_content))
    , m_chooseFolder(BarButton::withText(tr("Choose folder"), tr("Choose the folder containing your cheat sheets"),
          BarButton::Look::prominent, m_content))
{
    auto* const around = new QVBoxLayout(this);
    around->setSizeConstraint(QLayout::SetNoConstraint);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(m_content);
    auto* const rows = new QVBoxLayout(m_content);
    rows->setContentsMargins(gap, smallGap, gap, smallGap);
    rows->setSpacing(gap);
    rows->addStretch();
    rows->addWidget(m_symbol, 0, Qt::AlignHCenter);
    rows->addWidget(m_title);
    rows->addWidget(m_text);
    m_install = BarButton::withText(tr("Install starter sheets"),
        tr("Choose bundled example sheets to add to your folder"), BarButton::Look::framed, m_content);
    rows->addWidget(m_chooseFolder, 0, Qt::AlignHCenter);
    rows->addSpacing(smallGap - gap);
    rows->addWidget(m_install, 0, Qt::AlignHCenter);
    rows->addWidget(m_calls);
    rows->addStretch();
    connect(m_chooseFolder, &BarButton::clicked, this, &EmptyState::chooseFolder);
    connect(m_install, &BarButton::clicked, this, &EmptyState::installStarters);
}

void EmptyState::refresh(ReaderWindowState const& state)
{
    using enum ReaderWindowState::Content;
    setVisible(state.content != sheet);
    m_content->setVisible(state.content != notYetKnown);
    if (state.content == noFolder) {
        m_title->setText(tr("Your sheets, one click away"));
        m_text->setText(tr("Choose a folder to start. Your files stay yours."));
    } else if (state.content == noSheets) {
        m_title->setText(tr("No cheat sheets"));
        m_text->setText(tr("Add top-level .md or .quillory.json files, or install starter sheets."));
    }
    leaveOutWhatHasNoRoom();
}

int EmptyState::leastHeight() const
{
    return m_chooseFolder->sizeHint().height() + m_install->sizeHint().height() + 3 * smallGap + gap;
}

void EmptyState::takeKeyboard()
{
    // Until it is known what there is to read it has no button to press.
    auto* const stop = m_content->isHidden() ? static_cast<QWidget*>(this) : m_chooseFolder;
    stop->setFocus(Qt::OtherFocusReason);
}

void EmptyState::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_calls->setText(m_howToCall().join(u'\n'));
    leaveOutWhatHasNoRoom();
}

void EmptyState::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    leaveOutWhatHasNoRoom();
}

// The buttons stay.
void EmptyState::leaveOutWhatHasNoRoom()
{
    auto* const rows = m_content->layout();
    auto const leastFirst = { m_symbol, static_cast<QWidget*>(m_calls), static_cast<QWidget*>(m_text),
        static_cast<QWidget*>(m_title) };
    for (auto* const part : leastFirst)
        part->show();
    for (auto* const part : leastFirst) {
        rows->invalidate();
        if (rows->totalHeightForWidth(width()) <= height())
            break;
        part->hide();
    }
    rows->activate();
}

}
