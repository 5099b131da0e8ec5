#include "updates/ReleaseVersionDisplay.h"

namespace Quillory {

ReleaseVersionDisplay ReleaseVersionDisplay::ofApplication()
{
    auto const* const application = QCoreApplication::instance();
    auto const value = application ? application->property(infoKey) : QVariant();
    return ReleaseVersionDisplay(value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt);
}

QString ReleaseVersionDisplay::formatUpdateVersion(QString const& updateVersion, QString& installed) const
{
    installed = formatInstalledVersion(installed);
    return updateVersion;
}

QString ReleaseVersionDisplay::formatInstalledVersion(QString const& installed) const
{
    return installedVersion.value_or(installed);
}

QString ReleaseVersionDisplay::versionText() const
{
    return tr("Version %1").arg(installedVersion ? *installedVersion : tr("Unknown"));
}

}
