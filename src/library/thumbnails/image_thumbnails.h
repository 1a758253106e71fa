// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCache>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QSize>
#include <QThreadPool>
#include <QUuid>
#include <functional>

#include "platform/image_codec.h"

namespace quillo {

class PersistenceController;

/// The pictures on cards: read and decoded on a worker at the size they are shown, newest request
/// first, and kept within a bound. Main thread.
class ImageThumbnails final : public QObject {
    Q_OBJECT

public:
    /// Loads a clip's image bytes, empty when there are none; runs on the worker and may block.
    using Loader = std::function<QByteArray(const QUuid&)>;

    /// codec and what the loader uses must outlive this; destruction waits for a running load.
    ImageThumbnails(const ImageCodec& codec, Loader loader, QObject* parent = nullptr);
    ~ImageThumbnails() override;

    /// The clip's picture, if it is at hand, at no more than bounds device pixels; otherwise null,
    /// and ready() follows when it can be decoded.
    [[nodiscard]] QPixmap thumbnail(const QUuid& clip, QSize bounds);

    /// The picture's own size in pixels; empty until it was decoded.
    [[nodiscard]] QSize imageSize(const QUuid& clip) const;

    /// Drops a clip's picture, as when the clip is gone.
    void forget(const QUuid& clip);
    void forgetAll();

Q_SIGNALS:
    void ready(const QUuid& clip);

private:
    struct Entry {
        QPixmap pixmap;
        QSize bounds;
        QSize imageSize;
    };

    void request(const QUuid& clip, QSize bounds);
    void receive(const QUuid& clip, QSize bounds, QSize imageSize, const QImage& image);

    const ImageCodec& m_codec;
    Loader m_loader;
    QCache<QUuid, Entry> m_entries;  ///< Cost in KiB.
    QSet<QUuid> m_running;
    quint64 m_generation = 0;
    QThreadPool m_pool;
    int m_priority = 0;
};

/// Loads from the store, on the store's thread, in line with the captures. The controller must
/// outlive the loader's calls.
[[nodiscard]] ImageThumbnails::Loader storedImageLoader(PersistenceController& persistence);

}  // namespace quillo
