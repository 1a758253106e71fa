// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>
#include <optional>
#include <stop_token>

#include "app/updates/appcast.h"
#include "app/updates/update_feed.h"
#include "base/result.h"
#include "platform/http_client.h"

namespace quillo {

enum class UpdateStage {
    Idle,
    Packaged,
    Checking,
    UpToDate,
    Available,
    Downloading,
    Ready,
    Failed
};

/// How far a search for a new version has come.
struct UpdateState {
    UpdateStage stage = UpdateStage::Idle;
    QString runningVersion{};
    QString newVersion{};  ///< From Available on.
    qint64 receivedBytes = 0;
    qint64 totalBytes = 0;
    QString path{};    ///< Ready: where it lies.
    QString reason{};  ///< Failed: half a sentence for the person.
};

/// Looks for a new version and fetches it, each step because the person asked for it. What was
/// fetched is put before the person only when its size and its signature are right, and is never
/// run. Main thread; no call waits.
class UpdateSession final : public QObject {
    Q_OBJECT

public:
    struct Folders {
        QString work;       ///< For what is still on its way.
        QString downloads;  ///< Where the person looks for it.
    };

    /// The client must outlive the session.
    UpdateSession(HttpClient& http, UpdateFeed feed, Folders folders, QObject* parent = nullptr);
    ~UpdateSession() override;

    [[nodiscard]] const UpdateState& state() const { return m_state; }

    /// Begins anew, unless something is under way. A distribution's build asks nobody.
    void check();
    /// Fetches what check() found.
    void download();
    /// Gives up what is under way: a check is forgotten, a download can be begun again.
    void cancel();

Q_SIGNALS:
    void changed();

private:
    struct Relay;

    void feedCame(const Result<HttpResponse>& response);
    void downloadEnded(const Result<QString>& path);
    void progressed(qint64 receivedBytes);
    [[nodiscard]] HttpRequest newRequest();
    [[nodiscard]] std::function<void(qint64)> progressTeller();
    void setStage(UpdateStage stage);
    void fail(const QString& reason);

    HttpClient& m_http;
    UpdateFeed m_feed;
    Folders m_folders;
    UpdateState m_state;
    std::optional<AppcastItem> m_found;
    QString m_feedServer;
    std::stop_source m_stop;
    std::shared_ptr<Relay> m_relay;
};

}  // namespace quillo
