// SPDX-License-Identifier: MIT
#include "library/window/flow_layout.h"

#include <algorithm>

namespace quillo {

FlowPlaces flowPlaces(const QList<QSize>& sizes, int width, int spacing) {
    FlowPlaces places;
    QPoint at;
    int lineHeight = 0;
    for (const QSize& size : sizes) {
        if (at.x() > 0 && at.x() + size.width() > width) {
            at = {0, at.y() + lineHeight + spacing};
            lineHeight = 0;
        }
        places.boxes.append(QRect(at, size));
        lineHeight = std::max(lineHeight, size.height());
        at.rx() += size.width() + spacing;
    }
    places.height = at.y() + lineHeight;
    return places;
}

FlowLayout::FlowLayout(int spacing, QWidget* parent) : QLayout(parent) {
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
    qDeleteAll(m_items);
}

QLayoutItem* FlowLayout::takeAt(int index) {
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

QList<QLayoutItem*> FlowLayout::shownItems() const {
    QList<QLayoutItem*> shown = m_items;
    shown.removeIf([](const QLayoutItem* item) { return item->isEmpty(); });
    return shown;
}

QList<QSize> FlowLayout::sizes() const {
    QList<QSize> sizes;
    for (const QLayoutItem* item : shownItems()) {
        sizes.append(item->sizeHint());
    }
    return sizes;
}

int FlowLayout::heightForWidth(int width) const {
    return flowPlaces(sizes(), width, spacing()).height;
}

QSize FlowLayout::minimumSize() const {
    QSize least;
    for (const QSize& size : sizes()) {
        least = least.expandedTo(size);
    }
    return least;
}

void FlowLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    const FlowPlaces places = flowPlaces(sizes(), area.width(), spacing());
    const QList<QLayoutItem*> shown = shownItems();
    for (qsizetype i = 0; i < shown.size(); ++i) {
        shown[i]->setGeometry(places.boxes[i].translated(area.topLeft()));
    }
}

}  // namespace quillo
