#include "reader/ReaderView.h"

#include "reader/SheetList.h"
#include "rendering/ReaderColors.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int sidebarWidth = 200;
constexpr int separatorWidth = 1;
constexpr float scrollHandleOpacity = 0.3F;

QWidget* makeSeparator(QWidget* parent)
{
    auto* const separator = new QWidget(parent);
    separator->setObjectName(QStringLiteral("separator"));
    separator->setAttribute(Qt::WA_StyledBackground);
    return separator;
}

QWidget* makePane(QWidget* parent, char const* name)
{
    auto* const pane = new QWidget(parent);
    pane->setObjectName(QLatin1StringView(name));
    pane->setAttribute(Qt::WA_StyledBackground);
    return pane;
}

template<typename Layout>
Layout* tightLayout(QWidget* widget)
{
    auto* const layout = new Layout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

QToolButton* makeCloseButton(QWidget* parent, QString const& label)
{
    auto* const button = new QToolButton(parent);
    button->setText(QStringLiteral("✕"));
    button->setAccessibleName(label);
    button->setToolTip(label);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

}

ReaderView::ReaderView(LibraryStore& store, std::function<void()> dismiss, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_dismiss(std::move(dismiss))
    , m_topBar(makeTopBar())
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
    columns->addWidget(makeSidebar());
    auto* const beside = makeSeparator(this);
    beside->setFixedWidth(separatorWidth);
    columns->addWidget(beside);
    columns->addWidget(makeReadingSide(), 1);
    rows->addLayout(columns, 1);

    textView()->onDismiss = m_dismiss;
    setFocusProxy(textView());
    applyColors();
    observeStore();
    refresh();
}

ReaderView::~ReaderView() = default;

QWidget* ReaderView::makeTopBar()
{
    auto* const bar = makePane(this, "chrome");
    auto* const row = new QHBoxLayout(bar);
    row->setContentsMargins(14, 6, 6, 6);
    auto* const name = new QLabel(QStringLiteral("Quillory"), bar);
    auto font = name->font();
    font.setWeight(QFont::DemiBold);
    name->setFont(font);
    row->addWidget(name, 1);
    auto* const close = makeCloseButton(bar, tr("Close"));
    connect(close, &QToolButton::clicked, this, [this] { window()->close(); });
    row->addWidget(close);
    return bar;
}

QWidget* ReaderView::makeSidebar()
{
    auto* const sidebar = makePane(this, "chrome");
    sidebar->setFixedWidth(sidebarWidth);
    auto* const rows = new QVBoxLayout(sidebar);
    rows->setContentsMargins(8, 10, 8, 8);
    rows->setSpacing(6);
    auto* const heading = new QLabel(tr("YOUR SHEETS"), sidebar);
    heading->setObjectName(QStringLiteral("heading"));
    heading->setContentsMargins(6, 0, 0, 0);
    rows->addWidget(heading);
    m_list = new SheetList(m_store, sidebar);
    rows->addWidget(m_list, 1);
    return sidebar;
}

QWidget* ReaderView::makeReadingSide()
{
    auto* const side = makePane(this, "surface");
    auto* const rows = tightLayout<QVBoxLayout>(side);

    m_title = new QLabel(side);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setContentsMargins(16, 10, 16, 6);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    rows->addWidget(m_title);

    m_messageBar = makePane(side, "chrome");
    auto* const messageRow = new QHBoxLayout(m_messageBar);
    messageRow->setContentsMargins(16, 6, 6, 6);
    m_message = new QLabel(m_messageBar);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    messageRow->addWidget(m_message, 1);
    auto* const hide = makeCloseButton(m_messageBar, tr("Dismiss message"));
    hide->setToolTip(tr("Hide this message"));
    connect(hide, &QToolButton::clicked, this, [this] { m_store.message = std::nullopt; });
    messageRow->addWidget(hide);
    rows->addWidget(m_messageBar);

    m_error = new QLabel(side);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setObjectName(QStringLiteral("caption"));
    m_error->setWordWrap(true);
    m_error->setContentsMargins(16, 0, 16, 6);
    rows->addWidget(m_error);

    rows->addWidget(makeEmptyState(side), 1);

    m_reader = std::make_unique<NativeReader>(m_store, m_dismiss, side);
    rows->addWidget(&m_reader->scrollView(), 1);
    return side;
}

QWidget* ReaderView::makeEmptyState(QWidget* parent)
{
    m_emptyState = new QWidget(parent);
    auto* const rows = new QVBoxLayout(m_emptyState);
    m_emptyText = new QLabel(m_emptyState);
    m_emptyText->setAlignment(Qt::AlignCenter);
    m_emptyText->setWordWrap(true);
    m_chooseFolder = new QPushButton(tr("Choose folder"), m_emptyState);
    m_chooseFolder->setToolTip(tr("Choose the folder containing your cheat sheets"));
    connect(m_chooseFolder, &QPushButton::clicked, this, [this] { m_store.chooseFolder(window()->winId()); });
    rows->addStretch();
    rows->addWidget(m_emptyText);
    rows->addWidget(m_chooseFolder, 0, Qt::AlignHCenter);
    rows->addStretch();
    return m_emptyState;
}

void ReaderView::observeStore()
{
    auto const later = [this] { refreshLater(); };
    m_observations.push_back(m_store.sheets.addNotifier(later));
    m_observations.push_back(m_store.selectedID.addNotifier(later));
    m_observations.push_back(m_store.folder.addNotifier(later));
    m_observations.push_back(m_store.message.addNotifier(later));
    m_observations.push_back(m_store.textSize.addNotifier(later));
    m_observations.push_back(m_store.learningModeEnabled.addNotifier(later));
    m_observations.push_back(m_store.peekModifiers.addNotifier(later));
    m_observations.push_back(m_store.findQuery.addNotifier(later));
    m_observations.push_back(m_store.findRequest.addNotifier(later));
}

void ReaderView::startAfresh()
{
    m_list->showSelection();
    m_reader->startAfresh();
}

void ReaderView::refreshLater()
{
    if (m_isRefreshDue)
        return;
    m_isRefreshDue = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_isRefreshDue)
                refresh();
        },
        Qt::QueuedConnection);
}

void ReaderView::refresh()
{
    m_isRefreshDue = false;
    m_list->refresh();
    auto const* const sheet = m_store.selectedSheet();
    m_title->setText(sheet ? sheet->title : QStringLiteral("Quillory"));
    setWindowTitle(m_title->text());
    refreshBanners(sheet);
    m_reader->scrollView().setVisible(sheet != nullptr);
    if (sheet)
        m_reader->update(*sheet);
}

void ReaderView::refreshBanners(Sheet const* sheet)
{
    auto const& message = m_store.message.value();
    m_messageBar->setVisible(message.has_value());
    m_message->setText(message.value_or(QString()));

    auto const hasError = sheet && sheet->error;
    m_error->setVisible(hasError);
    if (hasError)
        m_error->setText(
            *sheet->error + (sheet->source.isEmpty() ? QString() : tr(" Showing the last readable version.")));

    m_emptyState->setVisible(!sheet);
    m_chooseFolder->setVisible(!m_store.folder.value());
    if (!sheet)
        m_emptyText->setText(m_store.folder.value()
                ? tr("<h3>No cheat sheets</h3>Add top-level .md or .quillory.json files, or install starter sheets.")
                : tr("<h3>Your sheets, one click away</h3>Choose a folder to start. Your files stay yours."));
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
        "#caption { font-size: 12px; }"
        "#chrome QListView { border: none; outline: none; }"
        "#chrome QListView::item { padding: 4px 6px; border-radius: 5px; }"
        "#chrome QListView::item:selected { background: palette(highlight); color: palette(highlighted-text); }"
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
