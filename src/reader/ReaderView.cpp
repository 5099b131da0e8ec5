#include "reader/ReaderView.h"

#include "library/LibraryError.h"
#include "reader/EmptyState.h"
#include "reader/MessageBar.h"
#include "reader/Panes.h"
#include "reader/Sidebar.h"
#include "reader/TopBar.h"
#include "rendering/ReaderColors.h"
#include "text/OneLine.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int separatorWidth = 1; // points
constexpr float scrollHandleOpacity = 0.3F;

QLabel* makeLabel(QWidget* parent, char const* name)
{
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setObjectName(QLatin1StringView(name));
    return label;
}

template<typename Layout>
Layout* tightLayout(QWidget* widget)
{
    auto* const layout = new Layout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

}

ReaderView::ReaderView(LibraryStore& store, ReaderServices services, std::function<void()> dismiss, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_services(std::move(services))
    , m_topBar(new TopBar(this))
    , m_sidebar(new Sidebar(store, m_services.executor, [this] { textView()->setFocus(); }, this))
{
    setObjectName(QStringLiteral("reader"));
    setAttribute(Qt::WA_StyledBackground);
    auto* const rows = tightLayout<QVBoxLayout>(this);
    rows->setContentsMargins(separatorWidth, separatorWidth, separatorWidth, separatorWidth); // room for the outline
    rows->addWidget(m_topBar);
    auto* const below = makeSeparator(this);
    below->setFixedHeight(separatorWidth);
    rows->addWidget(below);
    auto* const columns = new QHBoxLayout;
    columns->setSpacing(0);
    columns->addWidget(m_sidebar);
    auto* const beside = makeSeparator(this);
    beside->setFixedWidth(separatorWidth);
    columns->addWidget(beside);
    columns->addWidget(makeReadingSide(std::move(dismiss)), 1);
    rows->addLayout(columns, 1);

    setFocusProxy(textView());
    applyColors();
    observeStore();
    refresh();
}

ReaderView::~ReaderView() = default;

QWidget* ReaderView::topBar() const
{
    return m_topBar;
}

QWidget* ReaderView::makeReadingSide(std::function<void()> dismiss)
{
    auto* const side = new QWidget(this);
    makePane(*side, "surface");
    auto* const rows = tightLayout<QVBoxLayout>(side);

    m_title = makeLabel(side, "title");
    m_title->setContentsMargins(16, 10, 16, 6);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    rows->addWidget(m_title);

    m_message = new MessageBar(m_store, side);
    rows->addWidget(m_message);

    m_error = makeLabel(side, "caption");
    m_error->setWordWrap(true);
    m_error->setContentsMargins(16, 0, 16, 6);
    rows->addWidget(m_error);

    m_emptyState = new EmptyState(m_store, side);
    rows->addWidget(m_emptyState, 1);

    m_reader = std::make_unique<NativeReader>(m_store, m_services, std::move(dismiss), side);
    rows->addWidget(&m_reader->scrollView(), 1);
    return side;
}

void ReaderView::observeStore()
{
    auto const later = [this] { refreshLater(); };
    m_observations.push_back(m_store.sheets.addNotifier(later));
    m_observations.push_back(m_store.selectedID.addNotifier(later));
    m_observations.push_back(m_store.libraryQuery.addNotifier(later));
    m_observations.push_back(m_store.libraryResults.addNotifier(later));
    m_observations.push_back(m_store.pinnedIDs.addNotifier(later));
    m_observations.push_back(m_store.folder.addNotifier(later));
    m_observations.push_back(m_store.message.addNotifier(later));
    m_observations.push_back(m_store.busy.addNotifier(later));
    m_observations.push_back(m_store.textSize.addNotifier(later));
    m_observations.push_back(m_store.learningModeEnabled.addNotifier(later));
    m_observations.push_back(m_store.peekModifiers.addNotifier(later));
    m_observations.push_back(m_store.findQuery.addNotifier(later));
    m_observations.push_back(m_store.findRequest.addNotifier(later));
}

void ReaderView::startAfresh()
{
    m_sidebar->list().showSelection();
    m_reader->startAfresh();
}

void ReaderView::refreshLater()
{
    if (!m_refreshTask.isActive())
        m_refreshTask = m_services.executor.post([this] { refresh(); });
}

void ReaderView::refresh()
{
    m_refreshTask.end();
    m_sidebar->refresh();
    auto const* const sheet = m_store.selectedSheet();
    m_title->setText(sheet ? oneLine(sheet->title) : QStringLiteral("Quillory"));
    setWindowTitle(m_title->text());
    m_message->refresh();
    refreshError(sheet);
    m_emptyState->refresh(sheet != nullptr);
    m_reader->scrollView().setVisible(sheet != nullptr);
    if (sheet)
        m_reader->update(*sheet);
}

void ReaderView::refreshError(Sheet const* sheet)
{
    auto const hasError = sheet && sheet->error;
    m_error->setVisible(hasError);
    if (hasError)
        m_error->setText(
            showsLastReadable(*sheet) ? tr("%1 Showing the last readable version.").arg(*sheet->error) : *sheet->error);
}

void ReaderView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void ReaderView::applyColors()
{
    auto const colors = ColorSet::fromPalette(palette());
    auto const name = [&](ReaderColors::Dynamic color) { return color.resolved(colors.appearance).name(); };
    auto handle = colors.label;
    handle.setAlphaF(scrollHandleOpacity);
    auto const sheet = QStringLiteral(
        "#chrome, #chrome QListView { background: %1; }"
        "#surface { background: %2; }"
        "#separator { background: %3; }"
        "#reader { border: 1px solid %3; }"
        "QLabel, QToolButton { color: %5; }"
        "#title { font-size: 17px; font-weight: 600; }"
        "#heading { font-size: 11px; font-weight: 600; color: palette(placeholder-text); }"
        "#secondary { color: palette(placeholder-text); }"
        "#caption { font-size: 12px; }"
        "#chrome QListView { border: none; outline: none; }"
        "QScrollBar { border: none; background: transparent; margin: 0; }"
        "QScrollBar:vertical { width: 10px; }"
        "QScrollBar:horizontal { height: 10px; }"
        "QScrollBar::handle { background: %4; border-radius: 3px; margin: 2px; }"
        "QScrollBar::handle:vertical { min-height: 28px; }"
        "QScrollBar::handle:horizontal { min-width: 28px; }"
        "QAbstractScrollArea::corner { background: transparent; border: none; }"
        "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }")
                           .arg(name(ReaderColors::chrome), name(ReaderColors::surface), name(ReaderColors::codeBorder),
                               handle.name(QColor::HexArgb), colors.label.name());
    if (sheet != styleSheet())
        setStyleSheet(sheet);
}

}
