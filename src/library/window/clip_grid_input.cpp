// SPDX-License-Identifier: MIT
// What the person does in the grid with keys and pointer.
#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <utility>

#include "library/thumbnails/card_list_accessible.h"
#include "library/window/clip_grid.h"
#include "library/window/library_search_bar.h"

namespace quillo {
namespace {

std::optional<GridMove> moveOfKey(int key) {
    switch (key) {
        case Qt::Key_Left:
            return GridMove::Left;
        case Qt::Key_Right:
            return GridMove::Right;
        case Qt::Key_Up:
            return GridMove::Up;
        case Qt::Key_Down:
            return GridMove::Down;
        case Qt::Key_PageUp:
            return GridMove::PageUp;
        case Qt::Key_PageDown:
            return GridMove::PageDown;
        case Qt::Key_Home:
            return GridMove::First;
        case Qt::Key_End:
            return GridMove::Last;
        default:
            return std::nullopt;
    }
}

}  // namespace

void ClipGrid::moveTo(qsizetype index, Qt::KeyboardModifiers modifiers) {
    const QUuid clip = m_shown.value(index);
    if (clip.isNull()) {
        return;
    }
    ClipSelection selection = m_selection;
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        selection.extendTo(clip, m_shown);
    } else if (modifiers.testFlag(Qt::ControlModifier)) {
        selection.moveTo(clip);
    } else {
        selection.choose(clip);
    }
    m_scroller.jumpTo(layout().scrollToShow(index, scroll(), viewport()->height()));
    select(selection);
}

bool ClipGrid::moveByKey(const QKeyEvent& event) {
    const std::optional<GridMove> move = moveOfKey(event.key());
    if (!move) {
        return false;
    }
    moveTo(movedInGrid(*move, currentIndex(), listedLayout(), viewport()->height()),
           event.modifiers());
    return true;
}

// The key is ours where nothing can be moved, too.
bool ClipGrid::reorderByKey(const QKeyEvent& event) {
    const bool isLeft = event.key() == Qt::Key_Left;
    if (event.modifiers() != (Qt::AltModifier | Qt::ShiftModifier) ||
        !(isLeft || event.key() == Qt::Key_Right)) {
        return false;
    }
    reorder(moveBySteps(m_shown, m_selection.clips(), isLeft ? -1 : 1));
    if (const qsizetype index = currentIndex(); index >= 0) {
        m_scroller.jumpTo(layout().scrollToShow(index, scroll(), viewport()->height()));
        CardListAccessible::announceFocus(*this);
    }
    return true;
}

void ClipGrid::reorder(const std::optional<ClipMove>& move) {
    if (move && m_clips.hasOwnOrder()) {
        m_isReordering = true;
        Q_EMIT moveRequested(*move);
    }
}

void ClipGrid::keyPressEvent(QKeyEvent* event) {
    const bool isControl = event->modifiers().testFlag(Qt::ControlModifier);
    if (m_band && event->key() == Qt::Key_Escape) {
        m_selection = m_band->before();
        endBand();
    } else if (reorderByKey(*event)) {
        return;
    } else if (event->matches(QKeySequence::SelectAll)) {
        chooseAll();
    } else if (event->key() == Qt::Key_Space && isControl && !m_selection.current().isNull()) {
        press(currentIndex(), Qt::ControlModifier);
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
               event->matches(QKeySequence::Copy)) {
        Q_EMIT activated();
    } else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        Q_EMIT deleteRequested();
    } else if (event->key() == Qt::Key_Escape && m_selection.size() > 1) {
        choose(currentIndex());
    } else if (isSearchText(*event)) {
        Q_EMIT typed(event->text());
    } else if (!moveByKey(*event)) {
        event->ignore();
    }
}

void ClipGrid::press(qsizetype index, Qt::KeyboardModifiers modifiers) {
    const QUuid clip = m_shown.value(index);
    ClipSelection selection = m_selection;
    if (clip.isNull()) {
        selection.clear();
    } else if (modifiers.testFlag(Qt::ShiftModifier)) {
        selection.extendTo(clip, m_shown);
    } else if (modifiers.testFlag(Qt::ControlModifier)) {
        selection.toggle(clip);
    } else {
        selection.choose(clip);
    }
    select(selection);
}

// One of several that are selected may be the start of a drag of them all.
void ClipGrid::mousePressEvent(QMouseEvent* event) {
    m_pressPosition = event->position().toPoint();
    m_pressed = indexAt(m_pressPosition);
    const bool isPlain = event->modifiers() == Qt::NoModifier;
    const bool isOneOfSeveral =
        m_selection.size() > 1 && m_selection.contains(m_shown.value(m_pressed));
    m_choosesOnRelease = isPlain && isOneOfSeveral && event->button() == Qt::LeftButton;
    const bool keepsSelection = isOneOfSeveral && event->button() == Qt::RightButton;
    if (m_pressed < 0 && event->button() == Qt::LeftButton) {
        startBand(event->modifiers());
    } else if (!m_choosesOnRelease && !keepsSelection) {
        press(m_pressed, event->modifiers());
    }
}

void ClipGrid::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    const bool isFar =
        (position - m_pressPosition).manhattanLength() >= QApplication::startDragDistance();
    if (m_band && !event->buttons().testFlag(Qt::LeftButton)) {
        endBand();
    } else if (m_band) {
        drawBandTo(position);
        m_scroller.pull(position.y(), viewport()->height());
    } else if (event->buttons().testFlag(Qt::LeftButton) && m_pressed >= 0 && isFar) {
        startDrag();
    } else if (event->buttons() == Qt::NoButton) {
        hover(indexAt(position));
    }
}

void ClipGrid::mouseReleaseEvent(QMouseEvent* /*event*/) {
    endBand();
    if (std::exchange(m_choosesOnRelease, false)) {
        press(m_pressed, Qt::NoModifier);
    }
    m_pressed = -1;
}

void ClipGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    const bool isOnCard = indexAt(event->position().toPoint()) >= 0;
    if (event->button() == Qt::LeftButton && isOnCard) {
        Q_EMIT activated();
    }
}

void ClipGrid::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) {
        if (const qsizetype index = currentIndex(); index >= 0) {
            Q_EMIT menuRequested(cardRect(index).intersected(viewport()->rect()));
        }
    } else if (indexAt(event->pos()) >= 0) {
        Q_EMIT menuRequested(QRect(event->pos(), QSize(0, 0)));
    }
}

bool ClipGrid::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) {
        hover(-1);
    }
    return QAbstractScrollArea::viewportEvent(event);
}

}  // namespace quillo
