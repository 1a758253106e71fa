// SPDX-License-Identifier: MIT
#include "app/updates/update_session.h"

#include <QMetaObject>
#include <chrono>
#include <mutex>
#include <utility>

#include "app/updates/update_file.h"
#include "base/logging.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcUpdates, "SparkleUpdateManager")

constexpr std::chrono::milliseconds kFeedTimeout = 15s;
constexpr std::chrono::milliseconds kDownloadTimeout = 30min;
constexpr std::chrono::milliseconds kProgressStep = 100ms;
constexpr int kOk = 200;

Result<void> checkStatus(const Result<HttpResponse>& response) {
    if (!response) {
        return std::unexpected(response.error());
    }
    if (response->status != kOk) {
        return failure(ErrorKind::Failed,
                       u"the server answered with status %1"_s.arg(response->status));
    }
    return {};
}

}  // namespace

/// What the client's thread holds of a session, which may be gone when an answer comes.
struct UpdateSession::Relay {
    std::mutex mutex;
    UpdateSession* session = nullptr;  ///< Guarded by the mutex.

    /// Runs a step on the session's thread, unless its request was given up meanwhile.
    template <typename Step>
    void post(const std::stop_token& stop, Step step) {
        const std::lock_guard lock(mutex);
        if (session != nullptr) {
            QMetaObject::invokeMethod(
                session,
                [session = session, stop, step = std::move(step)] {
                    if (!stop.stop_requested()) {
                        step(*session);
                    }
                },
                Qt::QueuedConnection);
        }
    }
};

UpdateSession::UpdateSession(HttpClient& http, UpdateFeed feed, Folders folders, QObject* parent)
    : QObject(parent),
      m_http(http),
      m_feed(std::move(feed)),
      m_folders(std::move(folders)),
      m_relay(std::make_shared<Relay>()) {
    m_state.runningVersion = m_feed.runningVersion;
    m_relay->session = this;
}

UpdateSession::~UpdateSession() {
    m_stop.request_stop();
    const std::lock_guard lock(m_relay->mutex);
    m_relay->session = nullptr;
}

HttpRequest UpdateSession::newRequest() {
    m_stop.request_stop();
    m_stop = std::stop_source();
    HttpRequest request;
    request.transport = HttpRequest::Transport::Tls;
    request.stop = m_stop.get_token();
    return request;
}

void UpdateSession::check() {
    if (m_state.stage == UpdateStage::Checking || m_state.stage == UpdateStage::Downloading) {
        return;
    }
    if (m_feed.address.isEmpty()) {
        setStage(UpdateStage::Packaged);
        return;
    }
    HttpRequest request = newRequest();
    request.url = m_feed.address;
    request.origin = HttpRequest::Origin::Person;
    request.timeout = kFeedTimeout;
    request.largestBodyBytes = kLargestFeedBytes;
    setStage(UpdateStage::Checking);
    const std::stop_token stop = request.stop;
    m_http.get(std::move(request), [relay = m_relay, stop](Result<HttpResponse> response) {
        relay->post(stop, [response = std::move(response)](UpdateSession& session) {
            session.feedCame(response);
        });
    });
}

void UpdateSession::feedCame(const Result<HttpResponse>& response) {
    if (const auto checked = checkStatus(response); !checked) {
        fail(u"The list of versions cannot be fetched: "_s + checked.error().text);
        return;
    }
    const auto items = parseAppcast(response->body, m_feed.systemVersion);
    if (!items) {
        fail(u"The list of versions cannot be understood: "_s + items.error().text);
        return;
    }
    m_feedServer = response->server;
    m_found = newestUpdate(*items, m_feed.runningVersion);
    if (!m_found) {
        setStage(UpdateStage::UpToDate);
        return;
    }
    m_state.newVersion = m_found->displayVersion;
    m_state.totalBytes = m_found->sizeBytes;
    if (isComplete(*m_found)) {
        setStage(UpdateStage::Available);
    } else {
        fail(u"Version %1 is announced without a signature, a size or an https address"_s.arg(
            m_found->displayVersion));
    }
}

// Pieces come by the thousand; the eye needs ten a second.
std::function<void(qint64)> UpdateSession::progressTeller() {
    return [relay = m_relay, stop = m_stop.get_token(),
            told = std::chrono::steady_clock::time_point()](qint64 receivedBytes) mutable {
        const auto now = std::chrono::steady_clock::now();
        if (now - told >= kProgressStep) {
            told = now;
            relay->post(stop, [receivedBytes](UpdateSession& session) {
                session.progressed(receivedBytes);
            });
        }
    };
}

void UpdateSession::download() {
    if (m_state.stage != UpdateStage::Available || !m_found) {
        return;
    }
    Result<std::unique_ptr<UpdateFile>> created = UpdateFile::create(m_folders.work);
    if (!created) {
        fail(u"The new version cannot be downloaded: "_s + created.error().text);
        return;
    }
    const std::shared_ptr<UpdateFile> file = std::move(*created);
    HttpRequest request = newRequest();
    request.url = m_found->url;
    request.ownServer = m_feedServer;
    request.timeout = kDownloadTimeout;
    request.largestBodyBytes = m_found->sizeBytes;
    request.onPiece = [file, tell = progressTeller()](const QByteArray& piece) {
        file->append(piece);
        tell(file->sizeBytes());
    };
    m_state.receivedBytes = 0;
    setStage(UpdateStage::Downloading);
    const std::stop_token stop = request.stop;
    m_http.get(
        std::move(request), [relay = m_relay, stop, file, item = *m_found, key = m_feed.publicKey,
                             folder = m_folders.downloads](const Result<HttpResponse>& response) {
            if (stop.stop_requested()) {
                return;
            }
            const Result<void> checked = checkStatus(response);
            const Result<QString> path = checked
                                             ? file->moveTo(folder, item, key)
                                             : Result<QString>(std::unexpected(checked.error()));
            relay->post(stop, [path](UpdateSession& session) { session.downloadEnded(path); });
        });
}

void UpdateSession::progressed(qint64 receivedBytes) {
    m_state.receivedBytes = receivedBytes;
    Q_EMIT changed();
}

void UpdateSession::downloadEnded(const Result<QString>& path) {
    if (!path) {
        fail(u"The new version was not kept: "_s + path.error().text);
        return;
    }
    m_state.path = *path;
    setStage(UpdateStage::Ready);
}

void UpdateSession::cancel() {
    m_stop.request_stop();
    if (m_state.stage == UpdateStage::Downloading) {
        setStage(UpdateStage::Available);
    } else if (m_state.stage == UpdateStage::Checking) {
        setStage(UpdateStage::Idle);
    }
}

void UpdateSession::setStage(UpdateStage stage) {
    m_state.stage = stage;
    Q_EMIT changed();
}

void UpdateSession::fail(const QString& reason) {
    qCCritical(lcUpdates, "%s", qUtf8Printable(reason));
    m_state.reason = reason;
    setStage(UpdateStage::Failed);
}

}  // namespace quillo
