// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <optional>

#include "platform/freedesktop/thumbnail_cache.h"

namespace quillo {

/// What FreedesktopThumbnails does on its thread: looks into the shared cache, and has the
/// desktop's thumbnailer (org.freedesktop.thumbnails.Thumbnailer1 on the session bus) make what is
/// missing. Its slots belong to that thread, which may wait for disk and bus.
class FileThumbnailer final : public QObject {
    Q_OBJECT

public:
    struct Options {
        QString cacheFolder;
        std::chrono::milliseconds deadline{30'000};  ///< For one picture of the service.
    };

    FileThumbnailer(const ImageCodec& codec, Options options);
    ~FileThumbnailer() override;

    void request(quint64 ticket, const QString& path, int sidePx);
    void cancel(quint64 ticket);

Q_SIGNALS:
    /// The end of a request; a null image when there is no thumbnail.
    void finished(quint64 ticket, const QImage& image);

private Q_SLOTS:
    void readyReported(const QDBusMessage& signal);
    void errorReported(const QDBusMessage& signal);
    void finishReported(const QDBusMessage& signal);

private:
    struct Job {
        QString path;
        int sidePx = 0;
        std::optional<uint> handle;  ///< The service's, once it answered.
        QTimer* deadline = nullptr;
    };

    void queue(quint64 ticket, const QString& path, int sidePx);
    void queued(quint64 ticket, const QDBusMessage& reply);
    [[nodiscard]] bool connectToBus();
    [[nodiscard]] QList<quint64> ticketsOf(const QStringList& uris) const;
    [[nodiscard]] std::optional<Job> take(quint64 ticket);
    /// Ends a job with what the cache has by now.
    void finish(quint64 ticket);
    void dequeue(uint handle);

    ThumbnailCache m_cache;
    Options m_options;
    QDBusConnection m_bus{QString()};
    bool m_wasTried = false;
    QHash<quint64, Job> m_jobs;
};

}  // namespace quillo
