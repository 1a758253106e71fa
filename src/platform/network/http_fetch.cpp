// SPDX-License-Identifier: MIT
#include "platform/network/http_fetch.h"

#include <algorithm>
#include <utility>

#include "platform/network/public_address.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr int kMostRedirects = 5;
constexpr int kMostAddresses = 4;
constexpr std::chrono::milliseconds kPatienceForOneAddress = 3s;
constexpr qint64 kReadBufferBytes = 256 * 1024;

// What the address says besides where to go and what to ask for is nobody's business.
QUrl withoutExtras(QUrl url) {
    url.setUserInfo(QString());
    url.setFragment(QString());
    return url;
}

// The name of a host as it stands in a message (RFC 9110, 7.2).
QByteArray hostHeader(const QUrl& url) {
    const QString host = url.host();
    QByteArray text = host.contains(u':') ? '[' + host.toLatin1() + ']' : QUrl::toAce(host);
    if (url.port() >= 0) {
        text += ':' + QByteArray::number(url.port());
    }
    return text;
}

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Whether a reply came whole although Qt reports an error: its status alone is one then.
bool isStatusError(int status, QNetworkReply::NetworkError error) {
    return status >= 400 && error > QNetworkReply::UnknownProxyError;
}

}  // namespace

HttpFetch::HttpFetch(HttpRequest request, HttpClient::Callback callback,
                     const HostResolver& resolver)
    : m_request(std::move(request)),
      m_callback(std::move(callback)),
      m_resolver(resolver),
      m_isUnrestricted(m_request.origin == HttpRequest::Origin::Person),
      m_ownServer(plainAddress(QHostAddress(m_request.ownServer))) {
    m_manager.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    m_deadline.setSingleShot(true);
    m_attempt.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this,
            [this] { fail(ErrorKind::TimedOut, "the time is up"); });
    connect(&m_attempt, &QTimer::timeout, this, &HttpFetch::connectToNextAddress);
}

HttpFetch::~HttpFetch() {
    m_onStop.reset();
    dropReply();
}

void HttpFetch::start() {
    if (m_request.stop.stop_requested()) {
        fail(ErrorKind::Failed, "stopped");
        return;
    }
    m_deadline.start(m_request.timeout);
    m_onStop.emplace(m_request.stop, [this] {
        QMetaObject::invokeMethod(
            this, [this] { fail(ErrorKind::Failed, "stopped"); }, Qt::QueuedConnection);
    });
    visit(m_request.url);
}

bool HttpFetch::isAllowed(const QUrl& url) const {
    return isWebAddress(url) && (m_request.transport == HttpRequest::Transport::Any ||
                                 url.scheme() == QLatin1StringView("https"));
}

void HttpFetch::visit(const QUrl& url) {
    if (!isAllowed(url)) {
        fail(ErrorKind::NotPermitted, "not an address that may be gone to");
        return;
    }
    m_url = withoutExtras(url);
    const QHostAddress literal(m_url.host());
    if (literal.isNull()) {
        m_resolver(m_url.host(), this,
                   [this](const QList<QHostAddress>& addresses) { resolved(addresses); });
    } else {
        resolved({literal});
    }
}

bool HttpFetch::mayConnectTo(const QHostAddress& address) const {
    return m_isUnrestricted || isPublicAddress(address) ||
           (!m_ownServer.isNull() && plainAddress(address) == m_ownServer);
}

void HttpFetch::resolved(const QList<QHostAddress>& addresses) {
    if (!m_callback) {
        return;  // The time was up before.
    }
    m_addresses.clear();
    for (const QHostAddress& address : addresses) {
        if (mayConnectTo(address) && m_addresses.size() < kMostAddresses) {
            m_addresses.append(plainAddress(address));
        }
    }
    if (m_addresses.isEmpty() && !addresses.isEmpty()) {
        fail(ErrorKind::NotPermitted, "an address inside the network");
    } else {
        connectToNextAddress();
    }
}

void HttpFetch::connectToNextAddress() {
    dropReply();
    if (m_addresses.isEmpty()) {
        fail(ErrorKind::Failed, "nobody answers");
        return;
    }
    m_address = m_addresses.takeFirst();
    if (!m_addresses.isEmpty()) {
        m_attempt.start(kPatienceForOneAddress);
    }
    m_reply = m_manager.get(makeRequest());
    m_reply->setReadBufferSize(kReadBufferBytes);
    connect(m_reply, &QNetworkReply::requestSent, &m_attempt, &QTimer::stop);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpFetch::readHead);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpFetch::readBody);
    connect(m_reply, &QNetworkReply::finished, this, &HttpFetch::endBody);
}

// The request goes to the address that was judged; the name stands in its Host field and is what
// the certificate is held against.
QNetworkRequest HttpFetch::makeRequest() const {
    QUrl url = m_url;
    url.setHost(m_address.toString());
    QNetworkRequest request(url);
    request.setRawHeader("Host", hostHeader(m_url));
    if (QHostAddress(m_url.host()).isNull()) {
        request.setPeerVerifyName(QString::fromLatin1(QUrl::toAce(m_url.host())));
    }
    // Left out, Qt would name the person's language.
    request.setRawHeader("Accept-Language", "*");
    if (!m_request.userAgent.isEmpty()) {
        request.setRawHeader("User-Agent", m_request.userAgent);
    }
    if (m_request.onPiece) {
        request.setRawHeader("Accept-Encoding", "identity");
    }
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute}) {
        request.setAttribute(attribute, QNetworkRequest::Manual);
    }
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // A body that unpacks to more than its size promises is cut by our own bound.
    request.setDecompressedSafetyCheckThreshold(-1);
    return request;
}

void HttpFetch::readHead() {
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray location = m_reply->rawHeader("Location");
    if (isRedirect(status) && !location.isEmpty()) {
        followTo(location);
        return;
    }
    const qint64 announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (announced > m_request.largestBodyBytes && m_request.excess == HttpRequest::Excess::Refuse) {
        fail(ErrorKind::TooLarge, "the body is too large");
    }
}

void HttpFetch::followTo(const QByteArray& location) {
    dropReply();
    if (++m_redirects > kMostRedirects) {
        fail(ErrorKind::Malformed, "too many redirects");
        return;
    }
    if (std::exchange(m_isUnrestricted, false)) {
        m_ownServer = m_address;
    }
    visit(m_url.resolved(QUrl::fromEncoded(location)));
}

void HttpFetch::readBody() {
    take(m_reply->read(m_request.largestBodyBytes + 1 - m_received));
    if (m_received <= m_request.largestBodyBytes) {
        return;
    }
    if (m_request.excess == HttpRequest::Excess::Refuse) {
        fail(ErrorKind::TooLarge, "the body is too large");
        return;
    }
    m_body.truncate(m_request.largestBodyBytes);
    succeed();
}

void HttpFetch::take(const QByteArray& piece) {
    constexpr int kOk = 200;
    m_received += piece.size();
    if (!m_request.onPiece) {
        m_body += piece;
    } else if (m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == kOk) {
        m_request.onPiece(piece);
    }
}

void HttpFetch::endBody() {
    if (m_reply->bytesAvailable() > 0) {
        readBody();
    }
    if (m_reply == nullptr) {
        return;
    }
    const QNetworkReply::NetworkError error = m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (error == QNetworkReply::NoError || isStatusError(status, error)) {
        succeed();
    } else if (status == 0 && !m_addresses.isEmpty()) {
        connectToNextAddress();
    } else {
        // Qt's own words would name the address.
        fail(ErrorKind::Failed, error == QNetworkReply::SslHandshakeFailedError
                                    ? "the certificate is not in order"
                                    : "the connection failed");
    }
}

void HttpFetch::dropReply() {
    m_attempt.stop();
    m_body.clear();
    m_received = 0;
    if (QNetworkReply* reply = std::exchange(m_reply, nullptr)) {
        reply->disconnect(this);
        reply->disconnect(&m_attempt);
        reply->abort();
        reply->deleteLater();
    }
}

void HttpFetch::succeed() {
    HttpResponse response;
    response.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    response.url = m_url;
    response.server = m_address.toString();
    response.contentType = m_reply->rawHeader("Content-Type");
    response.body = std::exchange(m_body, {});
    finish(std::move(response));
}

void HttpFetch::fail(ErrorKind kind, const char* why) {
    finish(failure(kind, QString::fromLatin1(why)));
}

void HttpFetch::finish(Result<HttpResponse> result) {
    dropReply();
    m_deadline.stop();
    if (HttpClient::Callback callback = std::exchange(m_callback, nullptr)) {
        callback(std::move(result));
        Q_EMIT finished();
    }
}

}  // namespace quillo
