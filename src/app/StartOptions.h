#pragma once

#include "input/ModifierGesture.h"
#include "platform/ApplicationInstance.h"

#include <QCoreApplication>
#include <QString>

#include <expected>
#include <optional>

namespace Quillory {

// The command line of the program.
struct StartOptions {
    Q_DECLARE_TR_FUNCTIONS(StartOptions)
public:
    ApplicationInstance::Request request;

    bool isInBackground = false; // no window opens by itself

    bool tellsUnanswered = false; // another process has asked the running one in vain, and nothing else is to be done

    std::optional<QString> keysFor; // the desktop whose bindings are printed, and nothing else is to be done

    // Settings that are stored before the program reads them.
    std::optional<QString> folder;      // to connect, with its whole path
    std::optional<QString> spareFolder; // likewise, where none is connected
    std::optional<ModifierGesture> gesture;
    bool initialShortcuts = false; // Ctrl+Alt+K and Ctrl+Alt+J, each where none is stored

    bool changeSettings() const { return folder || spareFolder || gesture || initialShortcuts; }

    // Of main's arguments, before there is an application. The error is a sentence for the user. Ends the process
    // after --help and --version.
    static std::expected<StartOptions, QString> parse(int argc, char** argv);
};

}
