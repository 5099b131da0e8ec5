#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <variant>

namespace Quillory {

// One question to the desktop portal: to hand a file or a link over, or to start the program with the session. Deletes itself once it is answered.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    struct File {
        QString path;
    };
    struct Link {
        QString address;
    };
    // Leave to run without a window, and to be started with the session or not to be.
    struct Background {
        bool startsWithSession = false;
    };
    using Subject = std::variant<File, Link, Background>;

    // The portal's answer, or the bus's own refusal as text.
    struct Answer {
        enum class Outcome { done, cancelledByUser, failed };
        Outcome outcome = Outcome::failed;
        QString description;
        bool startsWithSession = false; // what became of a wish for it
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
    void send(Background const& background, QString const& token);
    void call(char const* interface, QString const& method, QVariantList const& arguments);
    void finish(Answer const& answer);

    QDBusConnection m_bus;
    Answered m_answered;
    QString m_path; // of the request, as far as it is known
};

}
