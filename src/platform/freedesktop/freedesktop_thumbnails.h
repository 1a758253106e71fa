// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QThread>

#include "platform/freedesktop/file_thumbnailer.h"
#include "platform/thumbnail_service.h"

namespace quillo {

/// The thumbnails of the desktop: the cache that its programs share (freedesktop Thumbnail Managing
/// Standard), then its thumbnailer over the session bus. A thread of its own, begun with the first
/// request, does the waiting.
class FreedesktopThumbnails final : public QObject, public ThumbnailService {
    Q_OBJECT

public:
    /// codec must outlive the service. An empty cache folder takes the person's.
    explicit FreedesktopThumbnails(const ImageCodec& codec, FileThumbnailer::Options options = {});
    ~FreedesktopThumbnails() override;

    [[nodiscard]] Ticket request(const QUrl& file, int sidePx, Callback callback) override;
    void cancel(Ticket ticket) override;

private:
    void begin();
    void finish(Ticket ticket, const QImage& image);

    const ImageCodec& m_codec;
    FileThumbnailer::Options m_options;
    Ticket m_latest = 0;
    QHash<Ticket, Callback> m_callbacks;
    FileThumbnailer* m_thumbnailer = nullptr;  ///< Lives on the thread and dies with it.
    QThread m_thread;
};

}  // namespace quillo
