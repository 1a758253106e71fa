// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QHash>
#include <QList>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <memory>

namespace quillo::testing {

/// A web server on every loopback address (127.0.0.0/8) that does what a test says, and keeps what
/// it was asked. Lives on the test's thread, under its event loop.
class WebServer final {
public:
    /// Is handed the connection on which the path was asked for.
    using Answer = std::function<void(QTcpSocket& connection)>;

    WebServer() : WebServer(std::make_unique<QTcpServer>()) {}

    /// With the certificate of "page.test".
    [[nodiscard]] static std::unique_ptr<WebServer> withTls() {
        const QString folder = QStringLiteral(QUILLO_TEST_DATA "/tls/");
        QFile key(folder + QStringLiteral("page.key"));
        if (!key.open(QIODevice::ReadOnly)) {
            qFatal("no key of the test's server");
        }
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificateChain(
            QSslCertificate::fromPath(folder + QStringLiteral("page.pem")));
        tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
        auto server = std::make_unique<QSslServer>();
        server->setSslConfiguration(tls);
        return std::unique_ptr<WebServer>(new WebServer(std::move(server)));
    }

    [[nodiscard]] quint16 port() const { return m_server->serverPort(); }
    [[nodiscard]] QString address(const QString& path,
                                  const QString& host = QStringLiteral("127.0.0.1")) const {
        return QStringLiteral("http://%1:%2%3").arg(host).arg(port()).arg(path);
    }

    void on(const QByteArray& path, Answer answer) { m_answers.insert(path, std::move(answer)); }
    void on(const QByteArray& path, const QByteArray& response) {
        on(path, [response](QTcpSocket& connection) { sendAndClose(connection, response); });
    }

    /// The heads of the requests so far.
    [[nodiscard]] const QList<QByteArray>& requests() const { return m_requests; }

    static void sendAndClose(QTcpSocket& connection, const QByteArray& bytes) {
        connection.write(bytes);
        connection.disconnectFromHost();
    }

    /// A whole response.
    [[nodiscard]] static QByteArray response(const QByteArray& body,
                                             const QByteArray& status = "200 OK",
                                             const QByteArray& fields = {}) {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n" + fields + "\r\n" + body;
    }
    [[nodiscard]] static QByteArray redirect(const QByteArray& location,
                                             const QByteArray& status = "302 Found") {
        return response({}, status, "Location: " + location + "\r\n");
    }

private:
    explicit WebServer(std::unique_ptr<QTcpServer> server) : m_server(std::move(server)) {
        if (!m_server->listen(QHostAddress::AnyIPv4)) {
            qFatal("the test's server cannot listen");
        }
        QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(),
                         [this] {
                             while (QTcpSocket* connection = m_server->nextPendingConnection()) {
                                 accept(connection);
                             }
                         });
    }

    void accept(QTcpSocket* connection) {
        QObject::connect(connection, &QTcpSocket::readyRead, m_server.get(),
                         [this, connection] { read(*connection); });
        QObject::connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
        read(*connection);
    }

    void read(QTcpSocket& connection) {
        if (!connection.peek(64 * 1024).contains("\r\n\r\n")) {
            return;
        }
        const QByteArray head = connection.readAll();
        m_requests.append(head);
        const QByteArray path = head.split(' ').value(1);
        if (const Answer answer = m_answers.value(path)) {
            answer(connection);
        } else {
            sendAndClose(connection, response("nothing here", "404 Not Found"));
        }
    }

    std::unique_ptr<QTcpServer> m_server;
    QHash<QByteArray, Answer> m_answers;
    QList<QByteArray> m_requests;
};

}  // namespace quillo::testing
