// SPDX-License-Identifier: MIT
#include "platform/freedesktop/freedesktop_thumbnails.h"

#include <QMetaObject>
#include <QStandardPaths>
#include <utility>

using namespace Qt::StringLiterals;

namespace quillo {

FreedesktopThumbnails::FreedesktopThumbnails(const ImageCodec& codec,
                                             FileThumbnailer::Options options)
    : m_codec(codec), m_options(std::move(options)) {
    if (m_options.cacheFolder.isEmpty()) {
        m_options.cacheFolder =
            QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
            u"/thumbnails"_s;
    }
    m_thread.setObjectName(u"file thumbnails"_s);
}

FreedesktopThumbnails::~FreedesktopThumbnails() {
    m_thread.quit();
    m_thread.wait();
}

void FreedesktopThumbnails::begin() {
    m_thumbnailer = new FileThumbnailer(m_codec, m_options);
    m_thumbnailer->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_thumbnailer, &QObject::deleteLater);
    connect(m_thumbnailer, &FileThumbnailer::finished, this, &FreedesktopThumbnails::finish);
    m_thread.start();
}

ThumbnailService::Ticket FreedesktopThumbnails::request(const QUrl& file, int sidePx,
                                                        Callback callback) {
    if (m_thumbnailer == nullptr) {
        begin();
    }
    const Ticket ticket = ++m_latest;
    m_callbacks[ticket] = std::move(callback);
    QMetaObject::invokeMethod(
        m_thumbnailer,
        [thumbnailer = m_thumbnailer, ticket, path = file.toLocalFile(), sidePx] {
            thumbnailer->request(ticket, path, sidePx);
        },
        Qt::QueuedConnection);
    return ticket;
}

void FreedesktopThumbnails::cancel(Ticket ticket) {
    if (m_callbacks.remove(ticket)) {
        QMetaObject::invokeMethod(
            m_thumbnailer, [thumbnailer = m_thumbnailer, ticket] { thumbnailer->cancel(ticket); },
            Qt::QueuedConnection);
    }
}

void FreedesktopThumbnails::finish(Ticket ticket, const QImage& image) {
    if (const Callback callback = m_callbacks.take(ticket)) {
        callback(image);
    }
}

}  // namespace quillo
