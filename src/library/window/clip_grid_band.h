// SPDX-License-Identifier: MIT
#pragma once

#include "library/window/clip_grid_layout.h"
#include "library/window/clip_selection.h"

namespace quillo {

/// A band that is drawn over the grid: it selects the cards that it touches beside those that were
/// selected before. Moving it costs what it newly touches or leaves, at any length of the list.
class ClipGridBand final {
public:
    /// All points are the content's, as in ClipGridLayout.
    ClipGridBand(QPoint origin, ClipSelection before)
        : m_area(origin, QSize(0, 0)), m_origin(origin), m_before(std::move(before)) {}

    [[nodiscard]] const QRect& area() const { return m_area; }
    /// What was selected before it.
    [[nodiscard]] const ClipSelection& before() const { return m_before; }

    /// Draws it to another point and brings the selection in line. The layout counts the list.
    void drawTo(QPoint point, const ClipGridLayout& layout, const QList<QUuid>& list,
                ClipSelection& selection);
    /// The cards stand elsewhere, or are others: what it touches is selected anew.
    void startAnew(const QList<QUuid>& before, const QList<QUuid>& after, ClipSelection& selection);

private:
    QRect m_area;
    QPoint m_origin;
    ClipSelection m_before;
    ClipGridLayout::Block m_touched;
};

}  // namespace quillo
