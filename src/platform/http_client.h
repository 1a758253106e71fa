// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <chrono>
#include <functional>
#include <stop_token>

#include "base/result.h"

namespace quillo {

/// Whether an address is one of the web: the scheme is http or https and there is a host.
[[nodiscard]] inline bool isWebAddress(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1StringView("http") ||
            url.scheme() == QLatin1StringView("https"));
}

/// One thing to get from the web.
struct HttpRequest {
    /// Who named the address decides where it may lead to.
    enum class Origin {
        Person,    ///< Anywhere.
        Document,  ///< To addresses of the public internet, and to `ownServer`.
    };
    /// What becomes of a body that is larger than largestBodyBytes.
    enum class Excess { Cut, Refuse };
    /// Tls: https only, after redirects too.
    enum class Transport { Any, Tls };

    QUrl url;
    Origin origin = Origin::Document;
    QString ownServer;     ///< The `server` of the response that named the address; or empty.
    QByteArray userAgent;  ///< Empty leaves it to the library.
    std::chrono::milliseconds timeout{10'000};  ///< For everything, redirects and body included.
    qint64 largestBodyBytes = 0;
    Excess excess = Excess::Refuse;
    Transport transport = Transport::Any;
    /// Where set, it gets the body of a response with status 200 in pieces, as it was sent, on a
    /// thread of the client's own; the response then comes without it.
    std::function<void(const QByteArray& piece)> onPiece{};
    std::stop_token stop{};  ///< Ends the request with an error.
};

struct HttpResponse {
    int status = 0;
    QUrl url;                ///< The address that answered, after redirects.
    QString server;          ///< The network address (IPv4 or IPv6) that answered.
    QByteArray contentType;  ///< As it was sent.
    QByteArray body;
};

/// Gets what lies at an address of the web. Any thread; no call waits.
///
/// Nothing is sent but the request: no cookies, no referrer, no credentials, not those in the
/// address either; nothing is kept afterwards. At most five redirects are followed, each under the
/// rules of the first address: http or https only, and a redirect is named by a document. The
/// address that a name stands for is looked up and judged once and then connected to, so that it
/// cannot change in between. A certificate that is not in order is an error.
class HttpClient {
public:
    using Callback = std::move_only_function<void(Result<HttpResponse>)>;

    virtual ~HttpClient() = default;

    /// The callback runs once, later, on a thread of the client's own. It is dropped when the
    /// client goes. Errors: TimedOut, TooLarge, NotPermitted (an address that must not be gone to),
    /// Malformed (redirects without end), Failed. A response with any status is none.
    virtual void get(HttpRequest request, Callback callback) = 0;
};

}  // namespace quillo
