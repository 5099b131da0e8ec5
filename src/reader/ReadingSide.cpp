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
    m_room.add(*m_learningMode, m_learningMode->text());
    m_room.add(*m_message, m_message->text(), &m_message->row());
    m_room.add(*m_iconWarnings, m_iconWarnings->text());
    m_room.add(*m_error, m_error->text(), &m_error->row());
    connect(&m_reader->scrollView().textView(), &ReaderTextView::moved, this, &ReadingSide::markScrolled);
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
    bool const isWaiting = keyboard == m_emptyState;
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
        shareRoom();
        // Bars that come make the text's room smaller: a match is brought to where it is seen then.
        layout()->activate();
        m_reader->update(*sheet);
    }
    markScrolled();
    // The toolkit hands the keyboard of what is hidden to whatever follows; while the window is not the active one, later.
    bool const isLost = isInContent && (window()->focusWidget() != keyboard || !keyboard->isVisibleTo(this));
    if (isWaiting || isLost)
        takeKeyboard();
}

bool ReadingSide::event(QEvent* event)
{
    auto const isTaken = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)
        shareRoom();
    return isTaken;
}

void ReadingSide::shareRoom()
{
    auto const heightOf = [](QWidget const& bar) { return bar.isHidden() ? 0 : bar.sizeHint().height(); };
    auto const least = m_emptyState->isHidden() ? leastTextHeight : m_emptyState->leastHeight();
    constexpr int passes = 2; // buttons that go below a text leave it another width
    for (int pass = 0; pass < passes; ++pass) {
        m_room.share(height() - heightOf(*m_header) - heightOf(*m_find) - least);
        layout()->activate();
    }
}

void ReadingSide::markScrolled()
{
    m_header->setScrolled(m_store.selectedSheet() && m_reader->scrollView().textView().scrollOrigin().y() > 0);
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
