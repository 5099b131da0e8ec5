#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace Quillory {

// A small web server on this machine, at a port of its own. Each path has its answer, to the byte.
class LoopbackServer {
public:
    struct Answer {
        QByteArray bytes;
        bool endsThere = true; // else the connection stays
    };

    LoopbackServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
    }

    QUrl address(QString const& path) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
    }

    void serve(QByteArray const& path, QByteArray const& body) { answers[path] = { answer("200 OK", body), false }; }
    void redirect(QByteArray const& path, QByteArray const& to)
    {
        answers[path] = { answer("302 Found", {}, "Location: " + to + "\r\n"), false };
    }

    static QByteArray answer(QByteArray const& status, QByteArray const& body, QByteArray const& head = {})
    {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + head
            + "Set-Cookie: who=you\r\n\r\n" + body;
    }

    QHash<QByteArray, Answer> answers;
    QByteArrayList requests; // their heads

private:
    void accept()
    {
        auto* const socket = m_server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            auto const head = socket->peek(1 << 16);
            if (!head.contains("\r\n\r\n"))
                return;
            socket->readAll();
            requests << head;
            auto const found = answers.value(
                head.split(' ').value(1), { answer("404 Not Found", "<html>none</html>") });
            socket->write(found.bytes);
            if (found.endsThere)
                socket->disconnectFromHost();
        });
    }

    QTcpServer m_server;
};

}
