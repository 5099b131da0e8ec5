#pragma once

#include "platform/ApplicationInstance.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace Quillory {

// org.freedesktop.Application, as desktops call it. The slots have the names and arguments of that interface.
class ApplicationInterface final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    using Request = ApplicationInstance::Request;
    using Wish = ApplicationInstance::Wish;
    using Answer = ApplicationInstance::Answer;

    explicit ApplicationInterface(std::function<void(Request const&, Answer const&)> requested);

    // A startup id ends in the server time of the key or click that caused it, where it has one.
    static std::optional<std::uint32_t> userTime(QString const& startupId);

    // The name of the action that stands for the wish; empty for one that is none.
    static QString actionOf(Wish wish);
    // What the action needs to be told: the sheet to show, or the keys that a peek is held with.
    static QVariantList parametersOf(Request const& request);

public Q_SLOTS:
    void Activate(QVariantMap const& platformData);
    // The files don't matter: the library is one folder, and chosen in the program.
    void Open(QStringList const& uris, QVariantMap const& platformData);
    // Actions that the program doesn't have are passed over. The answer to `show` comes once the sheet is known; the
    // others are answered at once.
    void ActivateAction(QString const& name, QVariantList const& parameters, QVariantMap const& platformData);

private:
    void request(Request request, QVariantMap const& platformData);
    Answer laterAnswer();

    std::function<void(Request const&, Answer const&)> m_requested;
};

}
