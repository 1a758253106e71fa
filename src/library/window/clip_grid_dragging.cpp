// SPDX-License-Identifier: MIT
// Cards that are dragged out of the grid or within it, and the band that selects them.
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <utility>

#include "library/groups/clip_drag.h"
#include "library/thumbnails/card_list_accessible.h"
#include "library/window/clip_grid.h"

namespace quillo {
namespace {

constexpr double kDraggedScale = 0.7;
constexpr int kBandAlpha = 48;

}  // namespace

// With Control or Shift what is selected stays.
void ClipGrid::startBand(Qt::KeyboardModifiers modifiers) {
    const bool isAdding = (modifiers & (Qt::ControlModifier | Qt::ShiftModifier)) != 0;
    if (!isAdding) {
        clearSelection();
    }
    m_pointer = m_pressPosition;
    m_band.emplace(m_pressPosition + QPoint(0, scroll()), m_selection);
}

void ClipGrid::drawBandTo(QPoint position) {
    m_pointer = position;
    m_band->drawTo(position + QPoint(0, scroll()), listedLayout(), m_shown, m_selection);
    viewport()->update();
}

void ClipGrid::endBand() {
    if (!m_band) {
        return;
    }
    m_band.reset();
    m_scroller.endPull();
    viewport()->update();
    m_selection.findCurrent(m_shown);
    CardListAccessible::announceFocus(*this);
    Q_EMIT selectionChanged();
}

// Whether a drag is ours is told by its source: another program can offer any type.
void ClipGrid::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(event->source() == this && m_clips.hasOwnOrder());
}

void ClipGrid::dragMoveEvent(QDragMoveEvent* event) {
    const QPoint position = event->position().toPoint();
    event->setAccepted(m_clips.hasOwnOrder());
    if (m_clips.hasOwnOrder()) {
        m_scroller.pull(position.y(), viewport()->height());
        dragOver(position);
    } else {
        endDragOver();
    }
}

// A gap in which they would stand as they do is none.
void ClipGrid::dragOver(QPoint position) {
    m_pointer = position;
    const ClipGridLayout::Gap gap = listedLayout().gapAt(position + QPoint(0, scroll()));
    if (m_gap != gap) {
        m_gap = gap;
        m_move = moveToGap(m_shown, QSet<QUuid>(m_dragged.begin(), m_dragged.end()), gap.before);
        viewport()->update();
    }
}

void ClipGrid::endDragOver() {
    m_scroller.endPull();
    m_gap.reset();
    m_move.reset();
    viewport()->update();
}

void ClipGrid::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    endDragOver();
}

void ClipGrid::dropEvent(QDropEvent* event) {
    const std::optional<ClipMove> move = m_move;
    endDragOver();
    event->acceptProposedAction();
    reorder(move);
}

// The cards beneath the pointer are others than before.
void ClipGrid::redrawMarks(const QList<QUuid>& before) {
    if (m_band) {
        m_band->startAnew(before, m_shown, m_selection);
        drawBandTo(m_pointer);
    } else if (m_gap) {
        m_gap.reset();
        dragOver(m_pointer);
    }
}

void ClipGrid::paintMarks(QPainter& painter) const {
    painter.translate(0, -scroll());
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_move) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_look.accent);
        painter.drawRoundedRect(m_gap->line, 1.5, 1.5);
    }
    if (m_band) {
        QColor fill = m_look.accent;
        fill.setAlpha(kBandAlpha);
        painter.setPen(QPen(m_look.accent, 1));
        painter.setBrush(fill);
        painter.drawRoundedRect(QRectF(m_band->area()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    }
}

// The drag's own event loop runs here; the window may be gone when it ends.
void ClipGrid::startDrag() {
    const qsizetype index = std::exchange(m_pressed, -1);
    m_choosesOnRelease = false;
    const QList<QUuid> clips = m_selection.contains(m_shown.value(index))
                                   ? selectedClips()
                                   : QList<QUuid>{m_shown.value(index)};
    std::unique_ptr<QMimeData> contents = m_dragData ? m_dragData(clips) : nullptr;
    if (contents == nullptr) {
        return;
    }
    m_dragged = clips;
    auto* drag = new QDrag(this);
    drag->setMimeData(contents.release());
    drag->setPixmap(dragPixmap(index, clips.size()));
    drag->setHotSpot(kClipDragHotSpot);
    const QPointer<ClipGrid> self(this);
    // Never a move: a file manager would take the person's file away.
    drag->exec(Qt::CopyAction);
    if (self) {
        m_dragged.clear();
        endDragOver();
        hover(-1);
    }
}

QPixmap ClipGrid::dragPixmap(qsizetype index, qsizetype count) {
    const QRect card = cardRect(index);
    const qreal ratio = devicePixelRatioF();
    QPixmap pixmap((QSizeF(card.size()) * kDraggedScale * ratio).toSize());
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.scale(kDraggedScale, kDraggedScale);
    painter.translate(-card.topLeft());
    paintCard(painter, index);
    if (count > 1) {
        const QRect badge(card.left() + 6, card.top() + 6, 34, 24);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_look.accent);
        painter.drawRoundedRect(badge, 12, 12);
        painter.setPen(m_look.onAccent);
        painter.drawText(badge, Qt::AlignCenter, QString::number(count));
    }
    return pixmap;
}

}  // namespace quillo
