#include "Updates.h"

#include "linux/fetch/FetchProcesses.h"
#include "linux/freedesktop/BusApplicationInstance.h"
#include "linux/freedesktop/PackageKitInstaller.h"
#include "updates/updater/FeedUpdater.h"
#include "updates/views/UpdateDialog.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDateTime>
#include <QStandardPaths>

// In a build with a feed.
namespace Quillory {

namespace {

// Installed or built, it lies beside this program.
QString fetchProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/quillory-fetch");
}

}

struct Updates::Parts {
    explicit Parts(Services const& given)
        : services(given)
        , downloads(given.executor, fetchProgram())
        , installer(QDBusConnection::sessionBus(), BusApplicationInstance::name() + QStringLiteral(".desktop"))
        , dialog(given.workspace, given.announcements)
    {
    }

    std::unique_ptr<Updater> make(Updater::Delegate& delegate)
    {
        FeedUpdater::Settings settings { .feed = QUrl(QStringLiteral(QUILLORY_UPDATE_FEED)),
            .key = MinisignKey::fromText(QUILLORY_UPDATE_KEY).value(),
            .installed = ReleaseVersion::fromText(QStringLiteral(QUILLORY_VERSION)).value(),
            .platform = QStringLiteral(QUILLORY_PLATFORM),
            .folder = QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/updates") };
        return std::make_unique<FeedUpdater>(std::move(settings),
            FeedUpdater::Services { services.defaults, services.executor, services.session, downloads, installer,
                services.fileOpener, dialog, [] { return QDateTime::currentDateTimeUtc(); } },
            delegate);
    }

    Services services;
    FetchProcesses downloads;
    PackageKitInstaller installer;
    UpdateDialog dialog;
};

Updates::Updates(Services const& services)
    : m_parts(std::make_unique<Parts>(services))
{
}

Updates::~Updates() = default;

Updater::Make Updates::make()
{
    return [this](Updater::Delegate& delegate) { return m_parts->make(delegate); };
}

}
