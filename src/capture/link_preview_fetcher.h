// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <functional>
#include <memory>
#include <optional>

#include "base/clock.h"
#include "model/clip.h"
#include "model/persistence_controller.h"
#include "platform/http_client.h"
#include "platform/path_monitor.h"

namespace quillo {

/// What the fetcher needs; everything must outlive it.
struct LinkPreviewServices {
    PersistenceController& persistence;
    PathMonitor& path;
    HttpClient& http;
    const Clock& clock;
};

/// Gives a newly stored link its title and picture: one request for the page, one for the picture
/// that the page names, and no second try. Whether the person wants that is for the caller to
/// know. What becomes of it is a change of the clip, made by a background context; a clip that is
/// deleted meanwhile stays deleted.
class LinkPreviewFetcher final {
public:
    explicit LinkPreviewFetcher(LinkPreviewServices services);
    /// Waits for a step that is just being done, never for the network; the rest is dropped.
    ~LinkPreviewFetcher();
    LinkPreviewFetcher(const LinkPreviewFetcher&) = delete;
    LinkPreviewFetcher& operator=(const LinkPreviewFetcher&) = delete;

    /// Does nothing for a clip that is gone, is no link of the web or has a title or picture
    /// already. Any thread; returns at once.
    void fetchPreview(const QUuid& clip);

private:
    struct Life;
    struct Preview {
        QUuid clip;
        std::optional<QString> title;
        std::optional<QByteArray> imageData;
    };

    /// The same step, to be run only while the fetcher lives.
    template <typename... Arguments, typename Step>
    [[nodiscard]] std::move_only_function<void(Arguments...)> whileAlive(Step step);

    void readClip(ObjectContext& context, const QUuid& clip);
    void fetchPage(const QUuid& clip, const QUrl& url);
    void readPage(const QUuid& clip, const Result<HttpResponse>& page);
    void fetchImage(Preview preview, const QUrl& image, const HttpResponse& page);
    void storePreview(Preview preview);
    [[nodiscard]] Result<void> storeNow(ObjectContext& context, const Preview& preview);

    LinkPreviewServices m_services;
    std::shared_ptr<Life> m_life;
};

}  // namespace quillo
