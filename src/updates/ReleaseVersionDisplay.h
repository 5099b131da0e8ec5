#pragma once

#include "platform/Updater.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <optional>

namespace Quillory {

// Shows the installed version as its release calls it, which need not be the number that versions are compared by.
class ReleaseVersionDisplay final : public VersionDisplay {
    Q_DECLARE_TR_FUNCTIONS(Updates)
public:
    // The property of the application object that the release's version is told by.
    static constexpr char const* infoKey = "QuilloryReleaseVersion";

    explicit ReleaseVersionDisplay(std::optional<QString> installed)
        : installedVersion(std::move(installed))
    {
    }
    // As the application object has it; absent where that is no text.
    static ReleaseVersionDisplay ofApplication();

    QString formatUpdateVersion(QString const& updateVersion, QString& installed) const override;
    QString formatInstalledVersion(QString const& installed) const override;

    // One line for people, of the settings window.
    QString versionText() const;

    std::optional<QString> const installedVersion;
};

}
