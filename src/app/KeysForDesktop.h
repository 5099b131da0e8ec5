#pragma once

#include <QString>

#include <expected>

namespace Quillory {

// What binds the stored shortcuts on one of the desktops of DesktopBindings, under the keyboard map of the session where a display can be had. Reads
// the settings and changes nothing. The error is a sentence for the user.
std::expected<QString, QString> keysForDesktop(QString const& desktop);

}
