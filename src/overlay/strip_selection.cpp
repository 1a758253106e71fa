// SPDX-License-Identifier: MIT
#include "overlay/strip_selection.h"

#include <algorithm>

namespace quillo {

void StripSelection::reset() {
    m_index = 0;
    m_clip = QUuid();
}

void StripSelection::select(int index, const QList<QUuid>& shown) {
    m_index = index;
    m_clip = shown.value(index);
}

void StripSelection::follow(const QList<QUuid>& shown) {
    const int last = std::max(0, int(shown.size()) - 1);
    const qsizetype place = m_clip.isNull() ? -1 : shown.indexOf(m_clip);
    m_index = place >= 0 ? int(place) : std::clamp(m_index, 0, last);
    if (place < 0 && !m_clip.isNull()) {
        m_clip = shown.value(m_index);
    }
}

}  // namespace quillo
