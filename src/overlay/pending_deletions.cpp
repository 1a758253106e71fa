// SPDX-License-Identifier: MIT
#include "overlay/pending_deletions.h"

#include <utility>

namespace quillo {

PendingDeletions::PendingDeletions(Delete deleteForGood, std::chrono::milliseconds secondThoughts,
                                   QObject* parent)
    : QObject(parent), m_delete(std::move(deleteForGood)) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(secondThoughts);
    connect(&m_timer, &QTimer::timeout, this, &PendingDeletions::complete);
}

PendingDeletions::~PendingDeletions() {
    complete();
}

void PendingDeletions::add(const QUuid& clip) {
    if (!m_clips.contains(clip)) {
        m_clips.append(clip);
    }
    m_timer.start();
    Q_EMIT changed();
}

void PendingDeletions::undo() {
    m_timer.stop();
    if (!std::exchange(m_clips, {}).isEmpty()) {
        Q_EMIT changed();
    }
}

void PendingDeletions::complete() {
    m_timer.stop();
    if (m_clips.isEmpty()) {
        return;
    }
    // Out of the store before they are let go: nobody sees them come back in between.
    m_delete(QList<QUuid>(m_clips));
    if (!std::exchange(m_clips, {}).isEmpty()) {
        Q_EMIT changed();
    }
}

void PendingDeletions::forget(const std::function<bool(const QUuid&)>& isGone) {
    if (m_clips.removeIf(isGone) > 0) {
        Q_EMIT changed();
    }
}

}  // namespace quillo
