// SPDX-License-Identifier: MIT
#include "overlay/strip_animator.h"

#include <cmath>

#include "overlay/strip_layout.h"

namespace quillo {
namespace {

constexpr int kDurationMs = 200;
constexpr int kFrameMs = 16;
// More come and go only when another list is shown.
constexpr qsizetype kMostExchanged = 3;

}  // namespace

QHash<QUuid, int> cardShifts(const QList<QUuid>& before, const QList<QUuid>& after) {
    QHash<QUuid, int> places;
    for (int i = 0; i < before.size(); ++i) {
        places.insert(before.at(i), i);
    }
    QHash<QUuid, int> shifts;
    qsizetype fresh = 0;
    int pushed = 0;
    // From the end, because a new card takes the movement of the one after it.
    for (int i = int(after.size()) - 1; i >= 0; --i) {
        const auto place = places.constFind(after.at(i));
        fresh += place == places.cend() ? 1 : 0;
        pushed = place == places.cend() ? pushed : *place - i;
        if (pushed != 0) {
            shifts.insert(after.at(i), pushed);
        }
    }
    const qsizetype kept = after.size() - fresh;
    const qsizetype gone = before.size() - kept;
    const bool isSameList = kept > 0 && fresh <= kMostExchanged && gone <= kMostExchanged;
    return isSameList ? shifts : QHash<QUuid, int>();
}

StripAnimator::StripAnimator(QObject* parent) : QObject(parent), m_progress(kDurationMs) {
    m_progress.setUpdateInterval(kFrameMs);
    m_progress.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_progress, &QTimeLine::valueChanged, this, &StripAnimator::advanced);
}

void StripAnimator::rearrange(const QList<QUuid>& before, const QList<QUuid>& after) {
    m_progress.stop();
    m_shifts = cardShifts(before, after);
    if (!m_shifts.isEmpty()) {
        m_progress.start();
    }
}

void StripAnimator::finish() {
    m_progress.stop();
    m_shifts.clear();
}

bool StripAnimator::isMoving() const {
    return m_progress.state() == QTimeLine::Running;
}

int StripAnimator::offsetOf(const QUuid& clip) const {
    if (!isMoving()) {
        return 0;
    }
    return int(
        std::lround(m_shifts.value(clip) * StripLayout::kStep * (1.0 - m_progress.currentValue())));
}

}  // namespace quillo
