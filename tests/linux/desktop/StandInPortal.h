#pragma once

#include "support/BusService.h"
#include "support/Test.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QFile>

#include <memory>

#include <fcntl.h>

namespace Quillory {

// The desktop's portal on the test's bus. It answers as the test says, or keeps its dialog open.
class StandInPortal {
public:
    std::optional<uint> response = 0;
    QVariantMap results;

    QStringList calls; // the last words of their names, and the files they are about
    QVariantMap options;
    QString parentWindow;

    void start()
    {
        service = std::make_unique<BusService>(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"service"_s),
            u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
            [this](QDBusMessage const& call, QDBusConnection& bus) { return answer(call, bus); });
    }

    std::unique_ptr<BusService> service;

private:
    static QString subject(QVariant const& argument)
    {
        auto const number = argument.value<QDBusUnixFileDescriptor>().fileDescriptor();
        return number < 0 ? argument.toString() : QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(number));
    }
    static bool isWritable(QVariant const& argument)
    {
        auto const descriptor = argument.value<QDBusUnixFileDescriptor>();
        return descriptor.isValid() && (fcntl(descriptor.fileDescriptor(), F_GETFL) & O_ACCMODE) == O_RDWR;
    }
    std::optional<QVariantList> answer(QDBusMessage const& call, QDBusConnection& bus)
    {
        auto const arguments = call.arguments();
        calls << call.member();
        if (arguments.isEmpty())
            return QVariantList();
        parentWindow = arguments.at(0).toString();
        options = qdbus_cast<QVariantMap>(arguments.last());
        if (arguments.size() > 2 && isWritable(arguments.at(1)) != options.value(u"writable"_s).toBool())
            return std::nullopt;
        if (arguments.size() > 2)
            calls << subject(arguments.at(1));
        auto const sender = call.service().mid(1).replace(u'.', u'_');
        auto const path = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            sender, options.take(u"handle_token"_s).toString());
        if (response) {
            auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
            signal << *response << results;
            bus.send(signal); // before the call has its reply
        }
        return QVariantList { QVariant::fromValue(QDBusObjectPath(path)) };
    }
};

}
