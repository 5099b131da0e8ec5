#pragma once

#include <QString>

#include <optional>

namespace Quillory {

// The choices and texts of a file dialog.
struct OpenPanelSettings {
    enum class ContentType { any, application };

    bool canChooseDirectories = false;
    bool canChooseFiles = true;
    bool allowsMultipleSelection = false;
    bool canCreateDirectories = false;
    bool treatsFilePackagesAsDirectories = false;
    ContentType allowedContentType = ContentType::any;
    std::optional<QString> directoryURL; // where it starts; where the user was last when absent
    QString prompt;                      // on the button that accepts
    QString message;

    bool operator==(OpenPanelSettings const&) const = default;
};

}
