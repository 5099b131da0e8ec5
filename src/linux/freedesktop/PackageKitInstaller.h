#pragma once

#include "platform/PackageInstaller.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QVariantList>

#include <functional>
#include <memory>

namespace Quillory {

// The session's front end of PackageKit, as the desktop's software centre serves it: by its present interface, else by
// the one before.
class PackageKitInstaller final : public PackageInstaller {
public:
    // `desktopEntry` names this program to the user.
    PackageKitInstaller(QDBusConnection sessionBus, QString desktopEntry);

    Registration install(QString const& path, Done done) override;

private:
    enum class Interface { present, previous };

    // What still listens for an answer.
    struct Wish {
        QString path;
        Done done;
    };

    void ask(std::shared_ptr<Wish> const& wish, Interface interface);
    void answered(std::shared_ptr<Wish> const& wish, Interface asked, QDBusError const& error);
    QVariantList arguments(QString const& path, Interface interface) const;

    QDBusConnection m_bus;
    QString m_desktopEntry;
};

}
