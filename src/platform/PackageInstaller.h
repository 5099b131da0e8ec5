#pragma once

#include "platform/Registration.h"

#include <QString>

#include <expected>
#include <functional>

namespace Quillory {

// The system's own installer of packages, which asks the user and has the rights for it. Main thread only.
class PackageInstaller {
public:
    enum class Fault { unavailable, cancelled, failed };
    struct Failure {
        Fault fault = Fault::failed;
        QString description; // the installer's, in the user's language
        bool operator==(Failure const&) const = default;
    };
    // Called once the package is installed or will not be, never inside `install`, nor once the registration has ended.
    using Done = std::move_only_function<void(std::expected<void, Failure>)>;

    virtual ~PackageInstaller() = default;

    // The file must stay until then. The registration's end recalls nothing: it only keeps `done` from being called.
    virtual Registration install(QString const& path, Done done) = 0;
};

}
