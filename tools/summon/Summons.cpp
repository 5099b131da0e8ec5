#include "Summons.h"

#include <algorithm>
#include <span>
#include <thread>
#include <unordered_map>
#include <utility>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

// A picture that has not changed for so long is finished: longer than any pause between two frames of one drawing.
constexpr auto still = 150ms;

constexpr auto betweenSamples = 300us;
constexpr auto betweenProbes = 1ms;

// How long a look waits for something to be drawn before it asks whether all has been.
constexpr auto betweenLooks = 10ms;

}

std::expected<std::unique_ptr<Summons>, QString> Summons::open(Call const& call, std::chrono::seconds timeout)
{
    auto connection = X11Connection::open();
    if (!connection)
        return std::unexpected(connection.error());
    auto capture = ScreenCapture::open(ScreenCapture::Notices::ofDrawing);
    if (!capture)
        return std::unexpected(capture.error());
    auto keyboard = SyntheticKeyboard::open();
    if (!keyboard)
        return std::unexpected(keyboard.error());
    return std::unique_ptr<Summons>(
        new Summons(call, timeout, std::move(*connection), std::move(*capture), std::move(*keyboard)));
}

Summons::Summons(Call call, std::chrono::seconds timeout, std::unique_ptr<X11Connection> connection,
    std::unique_ptr<ScreenCapture> capture, std::unique_ptr<SyntheticKeyboard> keyboard)
    : m_call(std::move(call))
    , m_timeout(timeout)
    , m_connection(std::move(connection))
    , m_desktop(*m_connection, m_call.peer.value_or("quillory"))
    , m_capture(std::move(capture))
    , m_keyboard(std::move(keyboard))
{
}

std::expected<void, QString> Summons::waitUntilGrabbed()
{
    auto const deadline = Clock::now() + m_timeout;
    for (;;) {
        auto const grabbed = m_desktop.isGrabbed(m_call.shortcut);
        if (!grabbed)
            return std::unexpected(QStringLiteral("This keyboard has no such keys as the shortcut needs."));
        if (*grabbed)
            return {};
        if (Clock::now() > deadline)
            return std::unexpected(QStringLiteral("No program held the shortcut within %1.").arg(seconds()));
        std::this_thread::sleep_for(betweenProbes); // between two looks
    }
}

QRect Summons::area(DesktopView::Reader const& reader) const
{
    constexpr int edge = 24;
    return m_call.peer ? reader.frame.adjusted(edge, edge, -edge, -edge) : reader.readingArea();
}

Summons::Clock::time_point Summons::strikeToShow()
{
    if (m_call.manner == Manner::toggle)
        return strike();
    m_keyboard->pressModifiers(m_call.shortcut.modifiers());
    auto const pressed = Clock::now();
    m_keyboard->press(static_cast<std::uint16_t>(m_call.shortcut.carbonKeyCode));
    return pressed;
}

Summons::Clock::time_point Summons::strikeToHide()
{
    return m_call.manner == Manner::toggle ? strike() : letGo();
}

Summons::Clock::time_point Summons::strike()
{
    m_keyboard->pressModifiers(m_call.shortcut.modifiers());
    m_keyboard->press(static_cast<std::uint16_t>(m_call.shortcut.carbonKeyCode));
    return letGo();
}

Summons::Clock::time_point Summons::letGo()
{
    auto const released = Clock::now();
    m_keyboard->release(static_cast<std::uint16_t>(m_call.shortcut.carbonKeyCode));
    m_keyboard->releaseModifiers(m_call.shortcut.modifiers());
    return released;
}

std::expected<Summons::Shown, QString> Summons::show(std::optional<QRect> known)
{
    auto watched = known;
    if (m_desktop.reader())
        return std::unexpected(QStringLiteral("The reader is on the screen already."));
    if (watched && !becomesStill(*watched))
        return std::unexpected(
            QStringLiteral("The windows under the reader did not keep still for %1.").arg(seconds()));
    m_frontBefore = m_desktop.frontWindow();

    auto const struck = strikeToShow();
    auto const deadline = struck + m_timeout;
    std::optional<DesktopView::Reader> reader;
    std::optional<Clock::time_point> first;
    auto last = struck;
    while (Clock::now() < deadline) {
        bool const wasKnown = watched.has_value();
        bool const isDrawn = m_capture->waitForDrawing(betweenLooks);
        auto const now = Clock::now();
        if (!watched) {
            reader = m_desktop.reader();
            if (reader)
                watched = area(*reader);
        }
        if (!watched)
            continue;
        if ((isDrawn || !wasKnown) && update(*watched)) {
            last = now;
            // The first look at an area is no change.
            first = first.value_or(last);
        } else if (last != struck && now - last >= still) {
            reader = m_desktop.reader();
            if (whatIsMissing(reader).isEmpty()) {
                if (area(*reader) == *watched)
                    return Shown { *reader, first ? std::optional(*first - struck) : std::nullopt, last - struck };
                return std::unexpected(QStringLiteral("The reader came up elsewhere than the time before."));
            }
        }
    }
    reader = m_desktop.reader();
    auto const missing = whatIsMissing(reader);
    return std::unexpected(
        missing.isEmpty() ? QStringLiteral("The reading area did not keep still within %1.").arg(seconds()) : missing);
}

// A sentence, or nothing when the reader shows a sheet.
QString Summons::whatIsMissing(std::optional<DesktopView::Reader> const& reader) const
{
    if (!reader)
        return QStringLiteral("No window of the reader came up within %1.").arg(seconds());
    if (!m_call.peer && !reader->bearsASheetsTitle())
        return QStringLiteral("The reader's window bore no sheet's title within %1; it was \"%2\".")
            .arg(seconds(), reader->title);
    if (!containsInk())
        return QStringLiteral("No text was painted in the reading area within %1.").arg(seconds());
    return {};
}

std::expected<Summons::Hidden, QString> Summons::hide(DesktopView::Reader const& reader)
{
    auto const released = strikeToHide();
    auto const deadline = released + m_timeout;
    std::optional<Clock::time_point> unmapped;
    while (Clock::now() < deadline) {
        if (!unmapped && !m_desktop.isOnScreen(reader.window))
            unmapped = Clock::now();
        if (unmapped && m_desktop.frontWindow() == m_frontBefore)
            return Hidden { *unmapped - released, Clock::now() - released };
        std::this_thread::sleep_for(betweenSamples); // between two looks
    }
    if (!unmapped)
        return std::unexpected(QStringLiteral("The reader's window was still on the screen after %1.").arg(seconds()));
    return std::unexpected(
        QStringLiteral("The window that was in front before did not get the front back within %1.").arg(seconds()));
}

std::expected<void, QString> Summons::savePicture(QString const& file)
{
    auto const picture = m_capture->picture(m_capture->screen());
    if (picture.isNull())
        return std::unexpected(QStringLiteral("The screen could not be captured."));
    if (!picture.save(file, "PNG"))
        return std::unexpected(QStringLiteral("The picture could not be written to %1.").arg(file));
    return {};
}

// True when the area differs from what was seen last.
bool Summons::update(QRect const& area)
{
    auto const now = m_capture->pixels(area);
    if (std::ranges::equal(now, m_pixels))
        return false;
    m_pixels.assign(now.begin(), now.end());
    return true;
}

bool Summons::becomesStill(QRect const& area)
{
    auto const deadline = Clock::now() + m_timeout;
    update(area);
    auto last = Clock::now();
    while (Clock::now() < deadline) {
        if (m_capture->waitForDrawing(betweenLooks) && update(area))
            last = Clock::now();
        else if (Clock::now() - last >= still)
            return true;
    }
    return false;
}

bool Summons::containsInk() const
{
    // Fewer pixels than a word has are no text.
    constexpr std::size_t aWord = 30;
    constexpr std::uint32_t color = 0xffffff;
    std::unordered_map<std::uint32_t, std::size_t> counts;
    for (auto const pixel : m_pixels)
        ++counts[pixel & color];
    std::size_t mostFrequent = 0;
    for (auto const& [_, count] : counts)
        mostFrequent = std::max(mostFrequent, count);
    return m_pixels.size() - mostFrequent >= aWord;
}

QString Summons::seconds() const
{
    return m_timeout == 1s ? QStringLiteral("1 second") : QStringLiteral("%1 seconds").arg(m_timeout.count());
}

}
