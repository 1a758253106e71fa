// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_band.h"

#include <algorithm>

namespace quillo {

void ClipGridBand::drawTo(QPoint point, const ClipGridLayout& layout, const QList<QUuid>& list,
                          ClipSelection& selection) {
    m_area = QRect(QPoint(std::min(point.x(), m_origin.x()), std::min(point.y(), m_origin.y())),
                   QPoint(std::max(point.x(), m_origin.x()), std::max(point.y(), m_origin.y())));
    const ClipGridLayout::Block left = std::exchange(m_touched, layout.cardsTouching(m_area));
    layout.forEachBeside(left, m_touched, [&](qsizetype i) {
        if (!m_before.contains(list[i])) {
            selection.remove(list[i]);
        }
    });
    layout.forEachBeside(m_touched, left, [&](qsizetype i) { selection.add(list[i]); });
}

void ClipGridBand::startAnew(const QList<QUuid>& before, const QList<QUuid>& after,
                             ClipSelection& selection) {
    if (before != after) {
        m_before.follow(before, after);
    }
    m_touched = {};
    selection = m_before;
}

}  // namespace quillo
