#pragma once

#include <QString>

#include <expected>
#include <functional>

namespace Quillory {

// Hands files and links to other programs of the desktop. Main thread only. Every path is absolute.
class FileOpener {
public:
    struct Failure {
        QString description; // in the user's language
        bool operator==(Failure const&) const = default;
    };
    // Called once on the main thread, inside the call or in a later turn, and never after the opener's end.
    using Done = std::move_only_function<void(std::expected<void, Failure>)>;

    virtual ~FileOpener() = default;

    // With the application that the desktop has for it.
    virtual void open(QString const& path, Done done) = 0;

    // The address of a page of the web, with the desktop's browser.
    virtual void openLink(QString const& link, Done done) = 0;

    // Shows the file in the desktop's file manager, as far as there is one.
    virtual void reveal(QString const& path) = 0;

    // With an application as the open panel gives it.
    virtual void openWith(QString const& path, QString const& application, Done done) = 0;
};

}
