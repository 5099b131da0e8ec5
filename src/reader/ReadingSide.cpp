#include "reader/ReadingSide.h"

#include "reader/BarButton.h"
#include "reader/CopyPill.h"
#include "reader/EmptyState.h"
#include "reader/FindBar.h"
#include "reader/LearningModeBar.h"
#include "reader/MessageBar.h"
#include "reader/Panes.h"
#include "reader/ReaderStyle.h"
#include "reader/SheetHeader.h"
#include "reader/WarningBar.h"

#include <QApplication>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int leastTextHeight = 32; // points, also under many banners in the smallest window

}

ReadingSide::ReadingSide(
    LibraryStore& store, ReaderServices const& services, std::function<void()> dismiss, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_header(new SheetHeader(this))
    , m_learningMode(new LearningModeBar(services.announcements, this))
    , m_find(new FindBar(store, this))
    , m_message(new MessageBar(store, services.announcements, this))
    , m_iconWarnings(new WarningBar(
          new BannerLabel(services.announcements, this, BannerLabel::Lines::elided), "iconWarnings", this))
    , m_error(makeErrorBar(services.announcements))
    , m_emptyState(new EmptyState(services.howToCall, this))
    , m_reader(std::make_unique<NativeReader>(store, services, std::move(dismiss), this))
    , m_copyPill(new CopyPill(services.executor, m_reader->scrollView()))
    , m_copyObservation(store.copyFeedback.addNotifier([this] { m_copyPill->say(m_store.copyFeedback); }))
{
    makePane(*this, "surface");
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    for (QWidget* const bar :
        std::initializer_list<QWidget*> { m_header, m_learningMode, m_find, m_message, m_iconWarnings, m_error })
        rows->addWidget(bar);
    rows->addWidget(m_emptyState, 1);
    rows->addWidget(&m_reader->scrollView(), 1);
    m_reader->scrollView().setMinimumHeight(leastTextHeight);
}

ReadingSide::~ReadingSide() = default;

WarningBar* ReadingSide::makeErrorBar(Announcements& announcements)
{
    auto* const bar = new WarningBar(new BannerLabel(announcements, this), "caption", this);
    auto* const open = bar->row().addButton(
        tr("Open in default editor"), tr("Open the sheet source in your default editor"));
    connect(open, &BarButton::clicked, this, [this] { m_store.openSheet(); });
    return bar;
}

void ReadingSide::refresh(ReaderWindowState const& state)
{
    auto const* const sheet = m_store.selectedSheet();
    if (sheet)
        m_reader->prepareFor(*sheet);
    auto* const keyboard = window()->focusWidget();
    bool const isInContent = keyboard
        && (m_emptyState->isAncestorOf(keyboard) || m_reader->scrollView().isAncestorOf(keyboard));
    m_header->refresh(state);
    m_learningMode->refresh(state);
    m_find->refresh(state);
    m_message->refresh(state);
    m_iconWarnings->show(state.iconWarnings.join(u'\n'));
    m_error->show(state.error, state.lastReadable);
    m_emptyState->refresh(state);
    m_reader->scrollView().setVisible(state.hasSheet());
    if (sheet) {
        // Bars that come make the text's room smaller: a match is brought to where it is seen then.
        layout()->activate();
        m_reader->update(*sheet);
    }
    // The toolkit hands the keyboard of what is hidden to whatever follows.
    if (isInContent && window()->focusWidget() != keyboard)
        takeKeyboard();
}

void ReadingSide::refreshFonts(double textSize)
{
    m_header->setTitleFont(ReaderStyle::titleFont(QApplication::font(), textSize));
}

void ReadingSide::takeKeyboard()
{
    auto& text = m_reader->scrollView().textView();
    if (text.isVisibleTo(this))
        text.setFocus();
    else if (m_emptyState->isVisibleTo(this))
        m_emptyState->takeKeyboard();
}

}
