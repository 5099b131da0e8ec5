#pragma once

#include "platform/ApplicationInstance.h"

#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace Quillory {

// org.freedesktop.Application, as desktops call it. The slots have the names and arguments of that interface.
class ApplicationInterface final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    explicit ApplicationInterface(std::function<void(ApplicationInstance::Request const&)> requested);

    // A startup id ends in the server time of the key or click that caused it, where it has one.
    static std::optional<std::uint32_t> userTime(QString const& startupId);

    // The name of the action that stands for the wish; empty for one that is none.
    static QString actionOf(ApplicationInstance::Wish wish);

public Q_SLOTS:
    void Activate(QVariantMap const& platformData);
    // The files don't matter: the library is one folder, and chosen in the program.
    void Open(QStringList const& uris, QVariantMap const& platformData);
    // Actions that the program doesn't have are passed over.
    void ActivateAction(QString const& name, QVariantList const& parameters, QVariantMap const& platformData);

private:
    void request(ApplicationInstance::Wish wish, QVariantMap const& platformData);

    std::function<void(ApplicationInstance::Request const&)> m_requested;
};

}
