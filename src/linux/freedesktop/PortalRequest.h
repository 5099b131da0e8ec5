#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <optional>
#include <variant>

namespace Quillory {

// One question to the desktop portal, such as to hand a file or a link over or to let the user choose a folder. It is always
// answered, also where there is no bus or the portal ends meanwhile, and then deletes itself; one that is deleted before that
// takes the portal's dialog along.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    struct File {
        enum class With { usualApplication, applicationThatUserChooses, fileManager };
        QString path;
        With with = With::usualApplication;
    };
    struct Link {
        QString address;
    };
    // One that the user chooses, to read and write in.
    struct Folder {
        QString title;
        QString acceptLabel;
        std::uint64_t window = 0; // below the dialog
    };
    // Leave to run without a window, and to be started with the session or not to be.
    struct Background {
        bool startsWithSession = false;
    };
    // Any method of a portal that is answered in this way. The options come last, with the request's token.
    struct Call {
        QLatin1StringView interface; // below org.freedesktop.portal
        QString method;
        QVariantList arguments;
        QVariantMap options;
    };
    using Subject = std::variant<File, Link, Folder, Background, Call>;

    // The portal's answer, or the bus's own refusal as text.
    struct Answer {
        enum class Outcome { done, cancelledByUser, failed };
        Outcome outcome = Outcome::failed;
        QString description;
        bool startsWithSession = false; // what became of a wish for it
        QString folder; // the path of the one that was chosen
        QVariantMap results;
    };
    using Answered = std::move_only_function<void(Answer const&)>;

    // `parent` bounds the request's life. `answered` may be called in here.
    static void start(QDBusConnection const& bus, Subject const& subject, QObject* parent, Answered answered);
    ~PortalRequest() override;
    PortalRequest(PortalRequest const&) = delete;
    PortalRequest& operator=(PortalRequest const&) = delete;

private Q_SLOTS:
    void respond(uint response, QVariantMap const& results);

private:
    PortalRequest(QDBusConnection bus, QObject* parent, Answered answered);
    void listen(QString const& path);
    void send(File const& file, QString const& token);
    void send(Link const& link, QString const& token);
    void send(Folder const& folder, QString const& token);
    void send(Background const& background, QString const& token);
    void send(Call call, QString const& token);
    void fail();
    void finish(Answer const& answer);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portal;
    Answered m_answered;
    QString m_path; // of the request, as far as it is known
};

}
