// quillory-summon: calls the running program's reader with its stored shortcut, from outside, and waits for what must
// follow. Prints one sentence, or with --times the measured milliseconds as JSON. Exits 1 with a sentence on failure.
// Other programs that come and go by a shortcut can be measured in the same way.

#include "GuestCalls.h"
#include "Starts.h"
#include "Summons.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

using namespace Quillory;

namespace {

struct Options {
    std::chrono::seconds timeout;
    QString picture;
    bool hides = false;
    int times = 0;
    bool peeks = false;
    QString peer;
    QString shortcut;
    QString start;
    QString guest;
};

std::expected<Options, QString> readOptions(QCoreApplication const& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Calls the reader with its shortcut and waits for a sheet's text."));
    parser.addHelpOption();
    QCommandLineOption const timeout(QStringLiteral("timeout"), QStringLiteral("Bound of each wait."),
        QStringLiteral("seconds"), QStringLiteral("20"));
    QCommandLineOption const picture(
        QStringLiteral("picture"), QStringLiteral("Save the whole screen as a PNG file."), QStringLiteral("file"));
    QCommandLineOption const hide(QStringLiteral("hide"), QStringLiteral("Send the reader away again."));
    QCommandLineOption const times(QStringLiteral("times"),
        QStringLiteral("After one call to warm up, call and send away so often, and print the times."),
        QStringLiteral("number"), QStringLiteral("0"));
    QCommandLineOption const peek(
        QStringLiteral("peek"), QStringLiteral("Peek with that shortcut instead of toggling."));
    QCommandLineOption const peer(QStringLiteral("peer"),
        QStringLiteral("Call another program, by the class of its window; needs --shortcut."), QStringLiteral("class"));
    QCommandLineOption const shortcut(QStringLiteral("shortcut"),
        QStringLiteral("A shortcut as the settings store it, instead of the stored one."), QStringLiteral("text"));
    QCommandLineOption const start(QStringLiteral("start"),
        QStringLiteral("Measure, --times over, how long this program takes to hold its shortcut."),
        QStringLiteral("program"));
    QCommandLineOption const guest(QStringLiteral("guest"),
        QStringLiteral("Measure, --times over, a session in a window of this X server, called by its key or its bus."),
        QStringLiteral("key|bus"));
    parser.addOptions({ timeout, picture, hide, times, peek, peer, shortcut, start, guest });
    parser.process(application);

    bool isSeconds = false;
    bool isNumber = false;
    Options const options { std::chrono::seconds(parser.value(timeout).toInt(&isSeconds)), parser.value(picture),
        parser.isSet(hide), parser.value(times).toInt(&isNumber), parser.isSet(peek), parser.value(peer).toLower(),
        parser.value(shortcut), parser.value(start), parser.value(guest) };
    if (parser.isSet(guest) && options.guest != QStringLiteral("key") && options.guest != QStringLiteral("bus"))
        return std::unexpected(QStringLiteral("--guest is called by key or by bus."));
    if (!isSeconds || options.timeout.count() < 1)
        return std::unexpected(QStringLiteral("--timeout needs a whole number of seconds."));
    if (!isNumber || options.times < 0 || (parser.isSet(times) && options.times == 0))
        return std::unexpected(QStringLiteral("--times needs a whole number above 0."));
    if (!parser.positionalArguments().isEmpty())
        return std::unexpected(
            QStringLiteral("There is nothing to do with \"%1\".").arg(parser.positionalArguments()[0]));
    return options;
}

std::expected<Shortcut, QString> storedShortcut(QString const& name)
{
    auto const folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QFile file(folder + QStringLiteral("/quillory/defaults.json"));
    if (!file.open(QIODevice::ReadOnly))
        return std::unexpected(QStringLiteral("The settings %1 can't be read.").arg(file.fileName()));
    auto const settings = QJsonDocument::fromJson(file.readAll()).object();
    auto const stored = settings[QStringLiteral("KeyboardShortcuts_") + name].toString();
    auto const shortcut = Shortcut::decode(stored);
    if (!shortcut || !std::in_range<std::uint16_t>(shortcut->carbonKeyCode))
        return std::unexpected(QStringLiteral("The settings %1 hold no shortcut %2.").arg(file.fileName(), name));
    return *shortcut;
}

QJsonObject medianAndWorst(std::vector<Summons::Milliseconds> values)
{
    std::ranges::sort(values);
    auto const middle = values.size() / 2;
    auto const median = values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
    auto const rounded = [](Summons::Milliseconds value) { return std::round(value.count() * 100) / 100; };
    return { { QStringLiteral("median"), rounded(median) }, { QStringLiteral("worst"), rounded(values.back()) } };
}

std::expected<Summons::Call, QString> callOf(Options const& options)
{
    Summons::Call call;
    if (options.shortcut.isEmpty()) {
        auto const stored = storedShortcut(
            options.peeks ? QStringLiteral("peekQuillory") : QStringLiteral("toggleQuillory"));
        if (!stored)
            return std::unexpected(stored.error());
        call.shortcut = *stored;
    } else if (auto const given = Shortcut::decode(options.shortcut)) {
        call.shortcut = *given;
    } else {
        return std::unexpected(QStringLiteral("\"%1\" is no stored shortcut.").arg(options.shortcut));
    }
    call.manner = options.peeks ? Summons::Manner::peek : Summons::Manner::toggle;
    if (!options.peer.isEmpty())
        call.peer = options.peer.toUtf8();
    return call;
}

// The reader is away when it begins and when it ends. Prints the times.
std::expected<void, QString> measure(Summons& summons, QRect const& area, int times)
{
    std::vector<Summons::Milliseconds> firstChange, finished, unmapped, focusBack;
    for (int round = 0; round < times; ++round) {
        auto const shown = summons.show(area);
        if (!shown)
            return std::unexpected(shown.error());
        auto const hidden = summons.hide(shown->reader);
        if (!hidden)
            return std::unexpected(hidden.error());
        firstChange.push_back(*shown->firstChange);
        finished.push_back(shown->finished);
        unmapped.push_back(hidden->unmapped);
        focusBack.push_back(hidden->focusBack);
    }
    QJsonObject const result {
        { QStringLiteral("times"), times },
        { QStringLiteral("unit"), QStringLiteral("ms") },
        { QStringLiteral("show"),
            QJsonObject { { QStringLiteral("firstChange"), medianAndWorst(firstChange) },
                { QStringLiteral("finished"), medianAndWorst(finished) } } },
        { QStringLiteral("hide"),
            QJsonObject { { QStringLiteral("unmapped"), medianAndWorst(unmapped) },
                { QStringLiteral("focusBack"), medianAndWorst(focusBack) } } },
    };
    std::fputs(QJsonDocument(result).toJson().constData(), stdout);
    return {};
}

std::expected<void, QString> measureStarts(Summons& summons, Options const& options)
{
    auto const starts = timeStarts(summons, options.start, std::max(options.times, 1));
    if (!starts)
        return std::unexpected(starts.error());
    QJsonObject const result { { QStringLiteral("times"), options.times },
        { QStringLiteral("unit"), QStringLiteral("ms") }, { QStringLiteral("ready"), medianAndWorst(*starts) } };
    std::fputs(QJsonDocument(result).toJson().constData(), stdout);
    return {};
}

std::expected<void, QString> measureGuest(Shortcut const& shortcut, Options const& options)
{
    auto const road = options.guest == QStringLiteral("key") ? GuestCalls::Road::key : GuestCalls::Road::bus;
    auto const calls = GuestCalls::open(shortcut, road, options.timeout);
    if (!calls)
        return std::unexpected(calls.error());
    std::vector<GuestCalls::Milliseconds> shown, gone;
    for (int round = -1; round < options.times; ++round) {
        for (auto* const times : { &shown, &gone }) {
            auto const taken = (*calls)->toggle();
            if (!taken)
                return std::unexpected(taken.error());
            if (round >= 0) // the first is to warm up
                times->push_back(*taken);
        }
    }
    QJsonObject const result { { QStringLiteral("times"), options.times },
        { QStringLiteral("unit"), QStringLiteral("ms") }, { QStringLiteral("shown"), medianAndWorst(shown) },
        { QStringLiteral("gone"), medianAndWorst(gone) } };
    std::fputs(QJsonDocument(result).toJson().constData(), stdout);
    return {};
}

std::expected<void, QString> run(Options const& options)
{
    auto const call = callOf(options);
    if (!call)
        return std::unexpected(call.error());
    if (!options.guest.isEmpty())
        return measureGuest(call->shortcut, options);
    auto const opened = Summons::open(*call, options.timeout);
    if (!opened)
        return std::unexpected(opened.error());
    auto& summons = **opened;

    if (!options.start.isEmpty())
        return measureStarts(summons, options);
    if (auto const grabbed = summons.waitUntilGrabbed(); !grabbed)
        return grabbed;
    auto const shown = summons.show();
    if (!shown)
        return std::unexpected(shown.error());
    if (!options.picture.isEmpty()) {
        if (auto const saved = summons.savePicture(options.picture); !saved)
            return saved;
    }
    if (options.hides || options.peeks || options.times > 0) {
        if (auto const hidden = summons.hide(shown->reader); !hidden)
            return std::unexpected(hidden.error());
    }
    if (options.times > 0)
        return measure(summons, summons.area(shown->reader), options.times);

    auto sentence = QStringLiteral("The reader came up with \"%1\"").arg(shown->reader.title);
    if (!options.picture.isEmpty())
        sentence += QStringLiteral(", the screen was saved as %1").arg(options.picture);
    if (options.hides)
        sentence += QStringLiteral(", and it gave the front back when it was sent away");
    std::puts(qPrintable(sentence + u'.'));
    return {};
}

}

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    auto const options = readOptions(application);
    auto const done = options ? run(*options) : std::unexpected(options.error());
    if (done)
        return 0;
    std::fprintf(stderr, "quillory-summon: %s\n", qPrintable(done.error()));
    return 1;
}
