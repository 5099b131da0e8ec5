#include "linux/network/HttpDownloads.h"
#include "support/EventLoop.h"
#include "support/LoopbackServer.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

namespace Quillory {
namespace {

// A server that encrypts by a certificate which it signed itself.
class SelfSignedServer : public QSslServer {
public:
    SelfSignedServer()
    {
        QFile file(QStringLiteral(QUILLORY_SELF_SIGNED));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        auto const text = file.readAll();
        certificate = QSslCertificate(text);
        auto configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(certificate);
        configuration.setPrivateKey(QSslKey(text, QSsl::Ec));
        setSslConfiguration(configuration);
        EXPECT_TRUE(listen(QHostAddress::LocalHost));
        connect(this, &QSslServer::pendingConnectionAvailable, this, [this] {
            auto* const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                socket->readAll();
                socket->write(LoopbackServer::answer("200 OK", "secret"));
            });
        });
    }

    QSslCertificate certificate;
};

TEST(HttpDownloads, A_certificate_counts_only_where_the_system_trusts_it)
{
    EventLoop loop;
    SelfSignedServer const server;
    ManualExecutor executor;
    HttpDownloads downloads(executor);
    auto const usual = QSslConfiguration::defaultConfiguration();
    auto trusting = usual;
    trusting.addCaCertificate(server.certificate);
    using Result = std::expected<void, Downloads::Fault>;
    for (auto const& [configuration, result] :
        { std::pair(usual, Result(std::unexpected(Downloads::Fault::untrusted))), std::pair(trusting, Result()) }) {
        QSslConfiguration::setDefaultConfiguration(configuration);
        QByteArray received;
        std::optional<Result> told;
        Downloads::Request const request { QUrl(u"https://127.0.0.1:%1/"_s.arg(server.serverPort())),
            [](QUrl const&) { return false; }, 100, 1h, 1h };
        auto const download = downloads.start(
            request,
            [&](QByteArray const& bytes) {
                received += bytes;
                return true;
            },
            [&](Result const& ended) { told = ended; });
        EXPECT_TRUE(loop.runUntil([&] {
            executor.runPosted();
            return told.has_value();
        }));
        EXPECT_EQ(told, result);
        EXPECT_EQ(received, result ? "secret" : "");
    }
    QSslConfiguration::setDefaultConfiguration(usual);
}

}
}
