#include "StartOptions.h"

#include "KeyboardShortcuts/bindings/DesktopBindings.h"
#include "platform/ModifierNames.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStringList>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

using Request = ApplicationInstance::Request;
using Wish = ApplicationInstance::Wish;

QStringList decoded(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments << QString::fromLocal8Bit(argv[index]);
    return arguments;
}

// What a start can ask of the program that runs, one at a time.
struct WishOptions {
    Q_DECLARE_TR_FUNCTIONS(StartOptions)
public:
    QCommandLineOption toggle { u"toggle"_s, tr("Show the reader, or send it away.") };
    QCommandLineOption open { u"open"_s, tr("Show the reader, or bring it to the front.") };
    QCommandLineOption peek { u"peek"_s, tr("Show the reader until --peek-end.") };
    QCommandLineOption held { u"held"_s,
        tr("With --peek: the keys that hold it, such as ctrl+alt. The peek also ends when they are released."),
        tr("keys") };
    QCommandLineOption peekEnd { u"peek-end"_s, tr("End a peek.") };
    QCommandLineOption show { u"show"_s, tr("Show the sheet with this title or file name."), tr("sheet") };
    QCommandLineOption settings { u"settings"_s, tr("Open the settings.") };

    QList<QCommandLineOption> all() const { return { toggle, open, peek, held, peekEnd, show, settings }; }

    // `otherwise` where none is asked for.
    std::expected<Request, QString> read(QCommandLineParser const& parser, Wish otherwise) const
    {
        std::optional<Wish> wish;
        for (auto const& [option, asked] :
            { std::pair { &toggle, Wish::toggle }, { &open, Wish::open }, { &peek, Wish::peek },
                { &peekEnd, Wish::peekEnd }, { &show, Wish::show }, { &settings, Wish::settings } }) {
            if (!parser.isSet(*option))
                continue;
            if (wish)
                return std::unexpected(tr("The options ask for more than one thing at once."));
            wish = asked;
        }
        Request request { .wish = wish.value_or(otherwise), .sheet = parser.value(show) };
        if (!parser.isSet(held))
            return request;
        request.held = ModifierNames::read(parser.value(held));
        if (!request.held)
            return std::unexpected(
                tr(R"("%1" are no keys to hold: these are ctrl, alt, shift and super, joined by "+".)")
                    .arg(parser.value(held)));
        if (request.wish != Wish::peek)
            return std::unexpected(tr("--held belongs to --peek."));
        return request;
    }
};

// What a start stores before the program reads it.
struct SettingsOptions {
    Q_DECLARE_TR_FUNCTIONS(StartOptions)
public:
    QCommandLineOption connect { u"connect"_s, tr("Connect this folder of sheets."), tr("folder") };
    QCommandLineOption spare { u"connect-if-none"_s, tr("Connect this folder of sheets where none is connected."),
        tr("folder") };
    QCommandLineOption gesture { u"gesture"_s,
        tr("Peek by tapping this key twice and holding it: shift, option (Alt) or off."), tr("key") };
    QCommandLineOption shortcuts { u"initial-shortcuts"_s,
        tr("Store Ctrl+Alt+K to call the reader and Ctrl+Alt+J to peek, each where none is stored.") };

    QList<QCommandLineOption> all() const { return { connect, spare, gesture, shortcuts }; }

    std::expected<void, QString> read(QCommandLineParser const& parser, StartOptions& options) const
    {
        if (parser.isSet(connect))
            options.folder = QDir::current().absoluteFilePath(parser.value(connect));
        if (parser.isSet(spare))
            options.spareFolder = QDir::current().absoluteFilePath(parser.value(spare));
        options.initialShortcuts = parser.isSet(shortcuts);
        if (!parser.isSet(gesture))
            return {};
        options.gesture = modifierGestureFromRawValue(parser.value(gesture));
        if (!options.gesture)
            return std::unexpected(tr("\"%1\" is no gesture: it is shift, option or off.").arg(parser.value(gesture)));
        return {};
    }
};

}

std::expected<StartOptions, QString> StartOptions::parse(int argc, char** argv)
{
    QCoreApplication::setApplicationName(u"quillory"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLORY_VERSION));
    WishOptions const wishes;
    QCommandLineOption const background(
        u"background"_s, tr("Start without a window, or do nothing where Quillory already runs."));
    SettingsOptions const settings;
    QCommandLineOption const keys(u"keys"_s,
        tr("Print what binds the shortcuts on this desktop: %1.").arg(DesktopBindings::desktops().join(u", "_s)),
        tr("desktop"));
    // Concerns updates alone, and takes one dash.
    QCommandLineOption capture(u"QuilloryCaptureLibrary"_s);
    capture.setFlags(QCommandLineOption::HiddenFromHelp);
    QCommandLineOption unanswered(u"tell-unanswered"_s);
    unanswered.setFlags(QCommandLineOption::HiddenFromHelp);

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(tr("Shows your own cheat sheets over whatever is in front."));
    auto const help = parser.addHelpOption();
    auto const version = parser.addVersionOption();
    parser.addOptions(wishes.all() + settings.all());
    parser.addOptions({ background, keys, capture, unanswered });
    if (!parser.parse(decoded(argc, argv)))
        return std::unexpected(parser.errorText());
    if (parser.isSet(help) || parser.isSet(version)) {
        QCoreApplication const application(argc, argv); // whose name the help begins with
        if (parser.isSet(help))
            parser.showHelp();
        parser.showVersion();
    }
    if (!parser.positionalArguments().isEmpty())
        return std::unexpected(tr(R"("%1" is no option. To connect a folder, write --connect "%1".)")
                .arg(parser.positionalArguments().first()));

    StartOptions options;
    options.tellsUnanswered = parser.isSet(unanswered);
    if (parser.isSet(keys)) {
        options.keysFor = parser.value(keys);
        if (!DesktopBindings::desktops().contains(*options.keysFor))
            return std::unexpected(tr("\"%1\" is no desktop that is known here: these are %2.")
                    .arg(*options.keysFor, DesktopBindings::desktops().join(u", "_s)));
    }
    options.isInBackground = parser.isSet(background);
    auto const request = wishes.read(parser, options.isInBackground ? Wish::none : Wish::plainStart);
    if (!request)
        return std::unexpected(request.error());
    options.request = *request;
    if (auto const read = settings.read(parser, options); !read)
        return std::unexpected(read.error());
    return options;
}

}
