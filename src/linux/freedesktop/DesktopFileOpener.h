#pragma once

#include "linux/freedesktop/PortalRequest.h"
#include "platform/FileOpener.h"
#include "platform/Lifetime.h"

#include <QDBusConnection>
#include <QObject>

namespace Quillory {

// Opens files and links as the desktop does: by its launcher, whose exit status tells, or else by its portal; reveals them in
// its file manager; and starts the application of a desktop entry. In a sandbox the portal does all of that.
class DesktopFileOpener final : public QObject, public FileOpener {
    Q_OBJECT
public:
    enum class By { launcher, portal };
    explicit DesktopFileOpener(QDBusConnection sessionBus, By by = By::launcher);

    void open(QString const& path, Done done) override;
    void openLink(QString const& link, Done done) override;
    // In a file manager that can point at the file; else its folder is opened.
    void reveal(QString const& path) override;
    // `application` is the path of a desktop entry; empty where the portal shall ask for one.
    void openWith(QString const& path, QString const& application, Done done) override;

private:
    void openByDesktop(PortalRequest::Subject const& subject, Done done);
    void openByPortal(PortalRequest::Subject const& subject, Done done);

    QDBusConnection m_bus;
    By m_by;
    Lifetime m_lifetime;
};

}
