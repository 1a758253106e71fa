// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <stop_token>

#include "platform/http_client.h"

namespace quillo {

/// Finds the addresses that a name stands for, best first; none when it has none. Answers later,
/// on context's thread, and not at all once context is gone.
using HostResolver = std::function<void(const QString& name, QObject* context,
                                        std::function<void(const QList<QHostAddress>&)> found)>;

/// One request of QtHttpClient from the first look-up to the end of the body. Belongs to the
/// client's thread, which nothing here blocks.
class HttpFetch final : public QObject {
    Q_OBJECT

public:
    HttpFetch(HttpRequest request, HttpClient::Callback callback, const HostResolver& resolver);
    ~HttpFetch() override;

    void start();

Q_SIGNALS:
    /// The callback has run.
    void finished();

private:
    /// Goes to an address of the web: the first one, or where a redirect led.
    void visit(const QUrl& url);
    void resolved(const QList<QHostAddress>& addresses);
    [[nodiscard]] bool mayConnectTo(const QHostAddress& address) const;
    void connectToNextAddress();
    [[nodiscard]] QNetworkRequest makeRequest() const;
    void readHead();
    void followTo(const QByteArray& location);
    [[nodiscard]] bool isAllowed(const QUrl& url) const;
    void readBody();
    void take(const QByteArray& piece);
    void endBody();
    void dropReply();
    void succeed();
    void fail(ErrorKind kind, const char* why);
    void finish(Result<HttpResponse> result);

    HttpRequest m_request;
    HttpClient::Callback m_callback;
    const HostResolver& m_resolver;
    QNetworkAccessManager m_manager;
    QTimer m_deadline;
    QTimer m_attempt;  ///< For one address while there are others.
    int m_redirects = 0;
    bool m_isUnrestricted = false;
    QHostAddress m_ownServer;
    QUrl m_url;  ///< Under its name; the request itself goes to m_address.
    QList<QHostAddress> m_addresses;
    QHostAddress m_address;
    QNetworkReply* m_reply = nullptr;
    QByteArray m_body;
    qint64 m_received = 0;
    std::optional<std::stop_callback<std::function<void()>>> m_onStop;
};

}  // namespace quillo
