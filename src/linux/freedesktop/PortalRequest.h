#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <variant>

namespace Quillory {

// One question to the desktop portal that hands a file or a link over. Deletes itself once it is answered.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    struct File {
        QString path;
    };
    struct Link {
        QString address;
    };
    using Subject = std::variant<File, Link>;

    // The portal's answer, or the bus's own refusal as text.
    struct Answer {
        enum class Outcome { done, cancelledByUser, failed };
        Outcome outcome = Outcome::failed;
        QString description;
    };
    using Answered = std::move_only_function<void(Answer const&)>;

    // `parent` bounds the request's life.
    static void start(QDBusConnection const& bus, Subject const& subject, QObject* parent, Answered answered);

private Q_SLOTS:
    void respond(uint response, QVariantMap const& results);

private:
    PortalRequest(QDBusConnection bus, QObject* parent, Answered answered);
    void listen(QString const& path);
    void send(File const& file, QString const& token);
    void send(Link const& link, QString const& token);
    void call(QString const& method, QVariant const& subject, QString const& token);
    void finish(Answer const& answer);

    QDBusConnection m_bus;
    Answered m_answered;
    QString m_path; // of the request, as far as it is known
};

}
