// SPDX-License-Identifier: MIT
#include "overlay/clip_strip.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "library/groups/clip_drag.h"
#include "library/groups/panel_tips.h"
#include "library/thumbnails/card_list_accessible.h"
#include "overlay/strip_accessible.h"

namespace quillo {
namespace {

// One notch of a wheel moves about one card.
constexpr double kPixelsPerWheelUnit = StripLayout::kStep / 120.0;
// A drag this near to an end of the strip scrolls it.
constexpr int kEdge = 48;
constexpr int kEdgeStep = 14;
constexpr int kEdgeIntervalMs = 16;
constexpr double kDraggedScale = 0.5;

}  // namespace

ClipStrip::ClipStrip(const OverlayClips& clips, CardPictures& pictures, const Clock& clock,
                     QWidget* parent)
    : QWidget(parent),
      m_clips(clips),
      m_pictures(pictures),
      m_painter(clips, pictures, m_animator, clock) {
    installStripAccessibility();
    setFixedHeight(StripLayout::kHeight);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAcceptDrops(true);
    setAccessibleName(QStringLiteral("Clips"));
    m_painter.setFont(font());
    connect(&m_scroller, &StripScroller::moved, this, &ClipStrip::scrolled);
    connect(&m_animator, &StripAnimator::advanced, this, qOverload<>(&QWidget::update));
    connect(&m_clips, &OverlayClips::refreshed, this, &ClipStrip::clipsChanged);
    connect(&m_pictures, &CardPictures::ready, this, &ClipStrip::pictureReady);
    clipsChanged();
}

void ClipStrip::setLook(const PanelLook& look) {
    m_painter.setLook(look);
    update();
}

void ClipStrip::setImageBadgePx(int pixels) {
    m_painter.setImageBadgePx(pixels);
    update();
}

StripLayout ClipStrip::layout() const {
    return {int(m_clips.cards().size()), width()};
}

QRect ClipStrip::cardRect(int index) const {
    return layout().cardRect(index).translated(-m_scroller.position(), 0);
}

int ClipStrip::cardsPerPage() const {
    return std::max(1, (width() - StripLayout::kSidePadding) / StripLayout::kStep);
}

void ClipStrip::selectCard(int index) {
    m_scroller.jumpTo(layout().scrollToCenter(index));
    setSelectedIndex(index);
}

void ClipStrip::setSelectedIndex(int index) {
    m_selectedIndex = index;
    update();
    CardListAccessible::announceFocus(*this);
}

void ClipStrip::followSelected(int index) {
    setSelectedIndex(index);
    const QRect place = layout().cardRect(index);
    const int start = place.left() - StripLayout::kSidePadding;
    const int end = place.right() + 1 + StripLayout::kSidePadding - width();
    const bool isInSight = QRect(0, 0, width(), height()).intersects(cardRect(index));
    if (isInSight && (m_scroller.position() > start || m_scroller.position() < end)) {
        m_scroller.jumpTo(m_scroller.position() > start ? start : end);
    }
}

void ClipStrip::reset() {
    m_selectedIndex = 0;
    m_hovered = {};
    m_pressed = {};
    m_grip.reset();
    m_animator.finish();
    m_scroller.jumpTo(0);
    tellVisibleCards();
    update();
}

void ClipStrip::prepareFirstCards() {
    const StripLayout::Range range = layout().cardsBetween(0, width());
    for (int i = range.first; i <= range.last; ++i) {
        (void)m_pictures.picture(m_clips.cards().at(i),
                                 {StripLayout::kCardWidth, StripLayout::kCardHeight},
                                 devicePixelRatioF());
    }
}

void ClipStrip::clipsChanged() {
    const QList<QUuid> before = std::exchange(m_shown, m_clips.cardIds());
    m_selectedIndex = std::clamp(m_selectedIndex, 0, std::max(0, int(m_shown.size()) - 1));
    m_scroller.setLimit(layout().maxScroll());
    m_hovered = {};
    if (isVisible() && !m_clips.isPending()) {
        m_animator.rearrange(before, m_shown);
    } else {
        m_animator.finish();
    }
    tellVisibleCards();
    if (!isVisible()) {
        prepareFirstCards();
    }
    update();
    CardListAccessible::announceCards(*this);
}

// What is waited for: the cards in sight and, should the strip be scrolled, the ones beside them.
void ClipStrip::tellVisibleCards() {
    const int left = m_scroller.position();
    const StripLayout::Range seen = layout().cardsBetween(left, left + width());
    QList<QUuid> ids = m_shown.mid(seen.first, seen.last - seen.first + 1);
    for (const int beside : {seen.last + 1, seen.first - 1}) {
        if (beside >= 0 && beside < m_shown.size()) {
            ids.append(m_shown.at(beside));
        }
    }
    m_pictures.setVisible(ids);
}

void ClipStrip::pictureReady(const QUuid& clip) {
    if (const qsizetype index = m_shown.indexOf(clip); index >= 0) {
        update(m_animator.isMoving() ? rect() : cardRect(int(index)));
    }
}

void ClipStrip::scrolled() {
    tellVisibleCards();
    hover(underMouse() ? std::optional(mapFromGlobal(QCursor::pos())) : std::nullopt);
    update();
}

void ClipStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_scroller.setLimit(layout().maxScroll());
    tellVisibleCards();
}

void ClipStrip::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_painter.setFont(font());
    }
}

void ClipStrip::wheelEvent(QWheelEvent* event) {
    const QPoint pixels = event->pixelDelta();
    const QPoint angle = event->angleDelta();
    if (!pixels.isNull()) {
        m_scroller.scrollBy(-(pixels.x() != 0 ? pixels.x() : pixels.y()));
    } else {
        m_scroller.glideBy(int(-(angle.x() != 0 ? angle.x() : angle.y()) * kPixelsPerWheelUnit));
    }
    event->accept();
}

ClipStrip::Place ClipStrip::placeAt(QPoint position) const {
    Place place;
    place.index = layout().indexAt(position + QPoint(m_scroller.position(), 0));
    if (place.index >= 0) {
        CardState state;
        state.showsDelete = true;
        state.showsGroup = true;
        place.button = CardPainter::buttonAt(cardRect(place.index), state, position);
    }
    return place;
}

void ClipStrip::hover(std::optional<QPoint> position) {
    const Place place = position ? placeAt(*position) : Place();
    const Place before = std::exchange(m_hovered, place);
    if (place == before) {
        return;
    }
    setCursor(place.index >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    for (const int index : {before.index, place.index}) {
        if (index >= 0) {
            update(cardRect(index));
        }
    }
}

void ClipStrip::leaveEvent(QEvent* /*event*/) {
    hover(std::nullopt);
}

void ClipStrip::hideEvent(QHideEvent* /*event*/) {
    hover(std::nullopt);
    m_pressed = {};
    m_grip.reset();
}

void ClipStrip::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    CardListAccessible::announceFocus(*this);
}

void ClipStrip::mousePressEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    m_pressPosition = position;
    m_pressed = event->button() == Qt::LeftButton ? placeAt(position) : Place();
    if (event->button() == Qt::MiddleButton) {
        m_grip = position.x() + m_scroller.position();
        return;
    }
    // The ground between the cards is the panel's.
    if (m_pressed.index < 0) {
        event->ignore();
    }
}

void ClipStrip::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    if (m_grip) {
        m_scroller.jumpTo(*m_grip - position.x());
        return;
    }
    hover(position);
    const bool isHeld = (event->buttons() & Qt::LeftButton) != 0 && m_pressed.index >= 0;
    const int distance = (position - m_pressPosition).manhattanLength();
    if (isHeld && m_pressed.button == CardButton::None &&
        distance >= QApplication::startDragDistance()) {
        startDrag();
    }
}

void ClipStrip::mouseReleaseEvent(QMouseEvent* event) {
    m_grip.reset();
    const Place pressed = std::exchange(m_pressed, Place());
    if (event->button() == Qt::LeftButton && pressed.index >= 0 &&
        placeAt(event->position().toPoint()) == pressed) {
        press(pressed);
    }
}

void ClipStrip::press(const Place& place) {
    switch (place.button) {
        case CardButton::None:
            Q_EMIT cardClicked(place.index);
            break;
        case CardButton::Delete:
            Q_EMIT deleteRequested(place.index);
            break;
        case CardButton::Group:
            Q_EMIT groupsRequested(place.index,
                                   CardPainter::groupButtonArea(cardRect(place.index)));
            break;
    }
}

void ClipStrip::contextMenuEvent(QContextMenuEvent* event) {
    // By key the controller opens it, for the selected card.
    const int index =
        event->reason() == QContextMenuEvent::Keyboard ? -1 : placeAt(event->pos()).index;
    if (index >= 0) {
        Q_EMIT menuRequested(index, QRect(event->pos(), QSize(0, 0)));
    }
}

bool ClipStrip::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        return showTip(static_cast<QHelpEvent*>(event)->pos());
    }
    return QWidget::event(event);
}

bool ClipStrip::showTip(const QPoint& position) {
    PanelTips* const tips = PanelTips::of(this);
    const Place place = placeAt(position);
    if (tips == nullptr || place.button == CardButton::None) {
        return false;
    }
    const bool deletes = place.button == CardButton::Delete;
    const QRect card = cardRect(place.index);
    const QRect area =
        deletes ? CardPainter::deleteButtonArea(card) : CardPainter::groupButtonArea(card);
    tips->show(deletes ? QStringLiteral("Delete clip (Del)") : QStringLiteral("Groups"),
               QRect(mapTo(window(), area.topLeft()), area.size()));
    return true;
}

StripScene ClipStrip::scene() const {
    return {.layout = layout(),
            .scroll = m_scroller.position(),
            .selectedIndex = m_selectedIndex,
            .hoveredIndex = m_hovered.index,
            .hoveredButton = m_hovered.button,
            .dropTarget = m_dropTarget,
            .dragged = m_dragged};
}

void ClipStrip::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    m_painter.paint(painter, event->rect(), scene());
}

// The drag's own event loop runs here; the panel may be gone when it ends.
void ClipStrip::startDrag() {
    const int index = std::exchange(m_pressed, Place()).index;
    const QUuid clip = m_shown.value(index);
    std::unique_ptr<QMimeData> contents = m_dragData ? m_dragData(clip) : nullptr;
    if (contents == nullptr) {
        return;
    }
    m_dragged = clip;
    auto* drag = new QDrag(this);
    drag->setMimeData(contents.release());
    drag->setPixmap(m_painter.cardPixmap(index, devicePixelRatioF(), kDraggedScale));
    drag->setHotSpot(kClipDragHotSpot);
    update();
    const QPointer<ClipStrip> self(this);
    // Never a move: a file manager would take the person's file away.
    drag->exec(Qt::CopyAction);
    if (self) {
        endDrag();
    }
}

void ClipStrip::endDrag() {
    m_dragged = QUuid();
    m_dropTarget = QUuid();
    m_edgeTimer.stop();
    hover(std::nullopt);
    update();
}

// Whether a drag is ours is told by its source: another program can offer any type.
void ClipStrip::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source() == this && m_clips.groupFilter()) {
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

void ClipStrip::dragMoveEvent(QDragMoveEvent* event) {
    const QPoint position = event->position().toPoint();
    m_edgeStep = position.x() < kEdge ? -kEdgeStep : position.x() > width() - kEdge ? kEdgeStep : 0;
    if (m_edgeStep == 0) {
        m_edgeTimer.stop();
    } else if (!m_edgeTimer.isActive()) {
        m_edgeTimer.start(kEdgeIntervalMs, this);
    }
    dragOver(position);
    event->acceptProposedAction();
}

void ClipStrip::dragOver(const QPoint& position) {
    const int index = placeAt(position).index;
    const QUuid over = m_shown.value(index);
    const QUuid target = over == m_dragged ? QUuid() : over;
    if (std::exchange(m_dropTarget, target) == target) {
        return;
    }
    update();
    if (!target.isNull()) {
        Q_EMIT draggedOver(m_dragged, index);
    }
}

void ClipStrip::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_edgeTimer.timerId()) {
        m_scroller.scrollBy(m_edgeStep);
    }
}

void ClipStrip::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    m_edgeTimer.stop();
    m_dropTarget = QUuid();
    update();
}

// The card has moved on entering its place.
void ClipStrip::dropEvent(QDropEvent* event) {
    m_edgeTimer.stop();
    m_dropTarget = QUuid();
    event->acceptProposedAction();
}

}  // namespace quillo
