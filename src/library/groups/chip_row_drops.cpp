// SPDX-License-Identifier: MIT
// What the row of chips does with a card that is dragged over it.
#include <QDropEvent>
#include <QMimeData>

#include "library/groups/chip_row.h"
#include "library/groups/clip_drag.h"

namespace quillo {
namespace {

constexpr int kScrollZone = 36;
constexpr int kScrollStep = 6;

}  // namespace

void ChipRow::setDragSource(const QObject* source) {
    setDragFilter([source](const QDropEvent& event) {
        return source != nullptr && event.source() == source;
    });
}

bool ChipRow::isWelcome(const QDropEvent& event) const {
    return m_isOwnDrag && m_isOwnDrag(event) && clipOfDrag(*event.mimeData()).has_value();
}

Chip* ChipRow::groupChipAt(const QPoint& position) const {
    auto* chip = qobject_cast<Chip*>(childAt(position));
    return chip != nullptr && chip->group.has_value() ? chip : nullptr;
}

void ChipRow::dragOver(Chip* target) {
    for (Chip* chip : std::as_const(m_chips)) {
        if (chip->isDropTarget() != (chip == target)) {
            chip->setDropTarget(chip == target);
        }
    }
}

void ChipRow::scrollForDrag(const QPoint& position) {
    const bool isLeft = position.x() < kScrollZone;
    const bool isRight = position.x() >= width() - kScrollZone;
    m_dragScrollStep = isLeft ? -kScrollStep : kScrollStep;
    if (isLeft != isRight && scrollRange() > 0) {
        m_dragScroll.start();
    } else {
        m_dragScroll.stop();
    }
}

// Taken for the whole row, so that a move brings it on over the chips.
void ChipRow::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(isWelcome(*event));
}

void ChipRow::dragMoveEvent(QDragMoveEvent* event) {
    const QPoint position = event->position().toPoint();
    Chip* const chip = isWelcome(*event) ? groupChipAt(position) : nullptr;
    dragOver(chip);
    scrollForDrag(position);
    if (chip != nullptr) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}

void ChipRow::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    m_dragScroll.stop();
    dragOver(nullptr);
}

void ChipRow::dropEvent(QDropEvent* event) {
    m_dragScroll.stop();
    dragOver(nullptr);
    const Chip* chip = groupChipAt(event->position().toPoint());
    if (chip == nullptr || !isWelcome(*event)) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT clipDropped(*chip->group, *clipOfDrag(*event->mimeData()));
}

}  // namespace quillo
