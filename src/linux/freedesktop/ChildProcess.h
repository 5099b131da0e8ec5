#pragma once

#include "platform/SystemError.h"

#include <QString>
#include <QStringList>

#include <expected>
#include <functional>

// Starts other programs. A program goes on when this one ends. It gets default signals, no input, none of our
// descriptors but the two outputs, and an environment without what belongs to our own start.
namespace Quillory::ChildProcess {

// Absent for a program that ended without an exit status of its own (a signal).
using Ended = std::function<void(std::optional<int> status)>;

// Starts `command`, its first element looked up in the search path, in `folder` or in the one at hand when that is empty.
// `ended` is called once on this thread, unless the application object is gone by then. Fails when nothing was started.
std::expected<void, SystemError> start(QStringList const& command, QString const& folder, Ended ended);

}
