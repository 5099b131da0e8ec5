#include "StartOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStringList>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

QStringList decoded(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments << QString::fromLocal8Bit(argv[index]);
    return arguments;
}

}

std::expected<StartOptions, QString> StartOptions::parse(int argc, char** argv)
{
    QCoreApplication::setApplicationName(u"quillory"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLORY_VERSION));
    QCommandLineOption const toggle(u"toggle"_s, tr("Show the reader, or send it away."));
    QCommandLineOption const settings(u"settings"_s, tr("Open the settings."));
    QCommandLineOption const background(
        u"background"_s, tr("Start without a window, or do nothing where Quillory already runs."));
    QCommandLineOption const connect(u"connect"_s, tr("Connect this folder of sheets."), tr("folder"));
    QCommandLineOption const spare(
        u"connect-if-none"_s, tr("Connect this folder of sheets where none is connected."), tr("folder"));
    QCommandLineOption const gesture(
        u"gesture"_s, tr("Peek by tapping this key twice and holding it: shift, option (Alt) or off."), tr("key"));
    QCommandLineOption const shortcuts(u"initial-shortcuts"_s,
        tr("Store Ctrl+Alt+K to call the reader and Ctrl+Alt+J to peek, each where none is stored."));
    // Concerns updates alone, and takes one dash.
    QCommandLineOption capture(u"QuilloryCaptureLibrary"_s);
    capture.setFlags(QCommandLineOption::HiddenFromHelp);

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(tr("Shows your own cheat sheets over whatever is in front."));
    auto const help = parser.addHelpOption();
    auto const version = parser.addVersionOption();
    parser.addOptions({ toggle, settings, background, connect, spare, gesture, shortcuts, capture });
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
    options.isInBackground = parser.isSet(background);
    if (options.isInBackground)
        options.wish = ApplicationInstance::Wish::none;
    if (parser.isSet(toggle))
        options.wish = ApplicationInstance::Wish::toggle;
    if (parser.isSet(settings))
        options.wish = ApplicationInstance::Wish::settings;
    if (parser.isSet(connect))
        options.folder = QDir::current().absoluteFilePath(parser.value(connect));
    if (parser.isSet(spare))
        options.spareFolder = QDir::current().absoluteFilePath(parser.value(spare));
    options.initialShortcuts = parser.isSet(shortcuts);
    if (parser.isSet(gesture)) {
        options.gesture = modifierGestureFromRawValue(parser.value(gesture));
        if (!options.gesture)
            return std::unexpected(tr("\"%1\" is no gesture: it is shift, option or off.").arg(parser.value(gesture)));
    }
    return options;
}

}
