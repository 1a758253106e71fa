// SPDX-License-Identifier: MIT
#include "library/thumbnails/picture_worker.h"

#include <QMetaObject>
#include <algorithm>
#include <utility>

namespace quillo {
namespace {

constexpr int kIdleThreadMs = 2000;

}  // namespace

PictureWorker::PictureWorker(PictureMaker maker, QObject* parent)
    : QObject(parent), m_maker(std::move(maker)) {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(kIdleThreadMs);
}

PictureWorker::~PictureWorker() {
    cancelAll();
    m_pool.waitForDone();
}

void PictureWorker::request(PictureRequest request) {
    const auto known = m_wanted.constFind(request.clip);
    if (known != m_wanted.cend() && known->pixels == request.pixels) {
        return;
    }
    cancel(request.clip);
    request.serial = ++m_serial;
    m_wanted.insert(request.clip, {request.serial, request.pixels});
    const std::lock_guard lock(m_mutex);
    m_waiting.prepend(std::move(request));
    if (!std::exchange(m_isRunning, true)) {
        m_pool.start([this] { run(); });
    }
}

void PictureWorker::setOrder(const QList<QUuid>& clips) {
    const std::lock_guard lock(m_mutex);
    QList<PictureRequest> ordered;
    for (const QUuid& clip : clips) {
        const auto found = std::ranges::find(m_waiting, clip, &PictureRequest::clip);
        if (found != m_waiting.end()) {
            ordered.append(std::move(*found));
            m_waiting.erase(found);
        }
    }
    for (const PictureRequest& dropped : std::as_const(m_waiting)) {
        m_wanted.remove(dropped.clip);
    }
    m_waiting = std::move(ordered);
}

void PictureWorker::cancel(const QUuid& clip) {
    if (m_wanted.remove(clip)) {
        const std::lock_guard lock(m_mutex);
        m_waiting.removeIf([&](const PictureRequest& waiting) { return waiting.clip == clip; });
    }
}

void PictureWorker::cancelAll() {
    m_wanted.clear();
    const std::lock_guard lock(m_mutex);
    m_waiting.clear();
}

std::optional<PictureRequest> PictureWorker::takeNext() {
    const std::lock_guard lock(m_mutex);
    if (m_waiting.isEmpty()) {
        m_isRunning = false;
        return std::nullopt;
    }
    return m_waiting.takeFirst();
}

void PictureWorker::run() {
    while (const std::optional<PictureRequest> next = takeNext()) {
        PictureResult result = m_maker.make(*next);
        result.request.given = {};
        QMetaObject::invokeMethod(
            this, [this, result = std::move(result)] { receive(result); }, Qt::QueuedConnection);
    }
}

void PictureWorker::receive(const PictureResult& result) {
    const auto wanted = m_wanted.constFind(result.request.clip);
    if (wanted != m_wanted.cend() && wanted->serial == result.request.serial) {
        m_wanted.erase(wanted);
        Q_EMIT made(result);
    }
}

}  // namespace quillo
