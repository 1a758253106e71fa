// SPDX-License-Identifier: MIT
#include "library/thumbnails/image_thumbnails.h"

#include <QMetaObject>
#include <algorithm>
#include <future>
#include <utility>

#include "model/clip.h"
#include "model/persistence_controller.h"

namespace quillo {
namespace {

// About forty cards' pictures at scale 1.
constexpr qsizetype kCacheKib = 12 * 1024;

}  // namespace

ImageThumbnails::ImageThumbnails(const ImageCodec& codec, Loader loader, QObject* parent)
    : QObject(parent), m_codec(codec), m_loader(std::move(loader)), m_entries(kCacheKib) {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(2000);
}

ImageThumbnails::~ImageThumbnails() {
    m_pool.clear();
    m_pool.waitForDone();
}

QPixmap ImageThumbnails::thumbnail(const QUuid& clip, QSize bounds) {
    Entry* entry = m_entries.object(clip);
    if (entry == nullptr || entry->bounds != bounds) {
        request(clip, bounds);
    }
    // An older picture at another scale is better than none.
    return entry != nullptr ? entry->pixmap : QPixmap();
}

QSize ImageThumbnails::imageSize(const QUuid& clip) const {
    const Entry* entry = m_entries.object(clip);
    return entry != nullptr ? entry->imageSize : QSize();
}

void ImageThumbnails::forget(const QUuid& clip) {
    m_entries.remove(clip);
}

void ImageThumbnails::forgetAll() {
    ++m_generation;
    m_pool.clear();
    m_running.clear();
    m_entries.clear();
}

void ImageThumbnails::request(const QUuid& clip, QSize bounds) {
    if (m_running.contains(clip)) {
        return;
    }
    m_running.insert(clip);
    const quint64 generation = m_generation;
    m_pool.start(
        [this, clip, bounds, generation] {
            const QByteArray bytes = m_loader(clip);
            const Result<QSize> size = m_codec.size(bytes);
            Result<QImage> image = m_codec.decodeScaled(bytes, bounds);
            QMetaObject::invokeMethod(
                this,
                [this, clip, bounds, generation, imageSize = size.value_or(QSize()),
                 decoded = image ? std::move(*image) : QImage()] {
                    if (generation == m_generation) {
                        receive(clip, bounds, imageSize, decoded);
                    }
                },
                Qt::QueuedConnection);
        },
        ++m_priority);
}

void ImageThumbnails::receive(const QUuid& clip, QSize bounds, QSize imageSize,
                              const QImage& image) {
    m_running.remove(clip);
    // An image that does not decode is remembered as such, so that it is not tried again.
    const qsizetype cost = std::max<qsizetype>(1, image.sizeInBytes() / 1024);
    m_entries.insert(clip, new Entry{QPixmap::fromImage(image), bounds, imageSize}, cost);
    Q_EMIT ready(clip);
}

ImageThumbnails::Loader storedImageLoader(PersistenceController& persistence) {
    return [&persistence](const QUuid& id) {
        std::promise<QByteArray> promise;
        persistence.perform([&](ObjectContext& context) {
            const auto clip = context.object<Clip>(id);
            promise.set_value(clip ? clip->imageData().value_or(QByteArray()) : QByteArray());
        });
        return promise.get_future().get();
    };
}

}  // namespace quillo
