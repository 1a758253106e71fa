// SPDX-License-Identifier: MIT
#include "overlay/strip_scroller.h"

#include <algorithm>

namespace quillo {

StripScroller::StripScroller(QObject* parent) : QObject(parent) {
    connect(&m_glide, &Glide::moved, this, &StripScroller::moveTo);
}

void StripScroller::setLimit(int limit) {
    m_limit = std::max(0, limit);
    if (m_position > m_limit) {
        jumpTo(m_limit);
    }
}

void StripScroller::jumpTo(int position) {
    m_glide.stop();
    moveTo(position);
}

void StripScroller::scrollBy(int pixels) {
    jumpTo(m_position + pixels);
}

void StripScroller::glideBy(int pixels) {
    m_glide.start(m_position, pixels, 0, m_limit);
}

void StripScroller::moveTo(int position) {
    const int clamped = std::clamp(position, 0, m_limit);
    if (clamped != m_position) {
        m_position = clamped;
        Q_EMIT moved();
    }
}

}  // namespace quillo
