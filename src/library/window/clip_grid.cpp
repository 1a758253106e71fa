// SPDX-License-Identifier: MIT
#include "library/window/clip_grid.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <utility>

#include "library/groups/slim_scroll_bar.h"
#include "library/thumbnails/card_list_accessible.h"
#include "library/window/clip_grid_accessible.h"
#include "library/window/clip_grid_texts.h"

namespace quillo {
namespace {

constexpr int kAgesEveryMs = 60'000;
constexpr int kRing = 3;

}  // namespace

ClipGrid::ClipGrid(LibraryClips& clips, CardPictures& pictures, const Clock& clock, QWidget* parent)
    : QAbstractScrollArea(parent),
      m_clips(clips),
      m_pictures(pictures),
      m_clock(clock),
      m_look(libraryLook(ColorScheme::Light)),
      m_painter(font()),
      m_scroller(*verticalScrollBar()) {
    new SlimScrollBar(*this);
    installClipGridAccessibility();
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAccessibleName(QStringLiteral("Clips"));
    viewport()->setMouseTracking(true);
    // Every pixel is painted here.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(ClipGridLayout::kRowStep / 4);
    connect(&m_clips, &LibraryClips::replaced, this, &ClipGrid::listReplaced);
    connect(&m_clips, &LibraryClips::changed, this, &ClipGrid::listChanged);
    connect(&m_clips, &LibraryClips::cardChanged, this, &ClipGrid::updateCard);
    connect(&m_pictures, &CardPictures::ready, this, &ClipGrid::updateCard);
    listReplaced();
}

void ClipGrid::setLook(const LibraryLook& look) {
    m_look = look;
    m_painter.setLook(look);
    viewport()->update();
}

ClipGridLayout ClipGrid::layout() const {
    return {m_clips.count(), viewport()->width()};
}

// What is not listed yet can be neither gone to nor touched.
ClipGridLayout ClipGrid::listedLayout() const {
    return {m_shown.size(), viewport()->width()};
}

int ClipGrid::scroll() const {
    return verticalScrollBar()->value();
}

QRect ClipGrid::cardRect(qsizetype index) const {
    return layout().cardRect(index).translated(0, -scroll());
}

ClipGridLayout::Range ClipGrid::visibleCards() const {
    return layout().cardsBetween(scroll(), scroll() + viewport()->height() - 1);
}

qsizetype ClipGrid::indexAt(QPoint viewportPoint) const {
    return layout().indexAt(viewportPoint + QPoint(0, scroll()));
}

qsizetype ClipGrid::currentIndex() const {
    return m_selection.current().isNull() ? -1 : m_shown.indexOf(m_selection.current());
}

QList<QUuid> ClipGrid::selectedClips() const {
    return m_selection.inOrderOf(m_shown);
}

void ClipGrid::listReplaced() {
    endDragOver();
    endBand();
    m_shown = m_clips.ids();
    ClipSelection selection = m_selection;
    if (m_clips.isComplete()) {
        selection.follow({}, m_shown);
    }
    updateRange();
    m_scroller.jumpTo(0);
    m_hovered = QUuid();
    tellVisibleCards();
    viewport()->update();
    select(selection);
    CardListAccessible::announceCards(*this);
}

void ClipGrid::listChanged() {
    const QList<QUuid> before = std::exchange(m_shown, m_clips.ids());
    // What was moved by the person moves.
    const std::optional<int> kept =
        std::exchange(m_isReordering, false) ? std::nullopt : anchoredScroll(before, m_laidOut);
    ClipSelection selection = m_selection;
    if (m_clips.isComplete()) {
        selection.follow(before, m_shown);
    }
    const QUuid anchor = m_anchor;
    updateRange();
    if (kept) {
        m_scroller.shiftBy(*kept - scroll());
    }
    m_anchor = anchor;
    tellVisibleCards();
    viewport()->update();
    select(selection);
    redrawMarks(before);
    CardListAccessible::announceCards(*this);
}

// The card whose height on the screen is kept: the one that was kept before, the current one, the
// first that is seen and is still listed. Rows are filled anew, so not all of them can keep it.
QUuid ClipGrid::anchorAmong(const QList<QUuid>& seen) const {
    for (const QUuid& wanted : {m_anchor, m_selection.current()}) {
        if (seen.contains(wanted) && m_shown.contains(wanted)) {
            return wanted;
        }
    }
    const auto left =
        std::ranges::find_if(seen, [this](const QUuid& clip) { return m_shown.contains(clip); });
    return left != seen.end() ? *left : QUuid();
}

// At the very start what is new comes into sight.
std::optional<int> ClipGrid::anchoredScroll(const QList<QUuid>& before,
                                            const ClipGridLayout& earlier) {
    if (scroll() == 0) {
        return std::nullopt;
    }
    const ClipGridLayout::Range seen =
        earlier.cardsBetween(scroll(), scroll() + viewport()->height() - 1);
    m_anchor = anchorAmong(before.mid(seen.first, seen.last - seen.first + 1));
    if (m_anchor.isNull()) {
        return std::nullopt;
    }
    const int height = earlier.cardRect(before.indexOf(m_anchor)).top() - scroll();
    return layout().cardRect(m_shown.indexOf(m_anchor)).top() - height;
}

void ClipGrid::updateRange() {
    m_laidOut = layout();
    const int height = viewport()->height();
    verticalScrollBar()->setPageStep(std::max(1, height - ClipGridLayout::kRowStep / 2));
    verticalScrollBar()->setRange(0, std::max(0, m_laidOut.contentHeight() - height));
}

void ClipGrid::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    const std::optional<int> kept = anchoredScroll(m_shown, m_laidOut);
    const QUuid anchor = m_anchor;
    updateRange();
    if (kept) {
        m_scroller.jumpTo(*kept);
    }
    m_anchor = anchor;
    tellVisibleCards();
    redrawMarks(m_shown);
}

// What is waited for: the cards in sight, then a row beside them.
void ClipGrid::tellVisibleCards() {
    const ClipGridLayout::Range seen = visibleCards();
    m_clips.load(seen.first, seen.last);
    const qsizetype row = layout().columns();
    QList<QUuid> ids = m_shown.mid(seen.first, seen.last - seen.first + 1);
    ids += m_shown.mid(std::min(seen.last + 1, qsizetype(m_shown.size())), row);
    m_pictures.setVisible(isVisible() ? ids : QList<QUuid>());
}

void ClipGrid::scrollContentsBy(int /*dx*/, int dy) {
    // What is moved must move by whole device pixels.
    const qreal ratio = devicePixelRatioF();
    if (ratio == std::floor(ratio) && !m_band && !m_gap) {
        viewport()->scroll(0, dy);
    } else {
        viewport()->update();
    }
    m_anchor = QUuid();
    tellVisibleCards();
    hover(underMouse() ? indexAt(viewport()->mapFromGlobal(QCursor::pos())) : -1);
    if (m_band) {
        drawBandTo(m_pointer);
    } else if (m_gap) {
        dragOver(m_pointer);
    }
}

void ClipGrid::wheelEvent(QWheelEvent* event) {
    const int pixels = event->pixelDelta().y();
    if (pixels != 0) {
        m_scroller.jumpTo(scroll() - pixels);
    } else {
        m_scroller.glideBy(-event->angleDelta().y() * ClipGridLayout::kRowStep / 120);
    }
    event->accept();
}

void ClipGrid::updateCard(const QUuid& clip) {
    const ClipGridLayout::Range seen = visibleCards();
    for (qsizetype i = seen.first; i <= seen.last && i < m_shown.size(); ++i) {
        if (m_shown[i] == clip) {
            viewport()->update(cardRect(i).adjusted(-kRing, -kRing, kRing, kRing));
        }
    }
}

void ClipGrid::hover(qsizetype index) {
    const QUuid before = std::exchange(m_hovered, m_shown.value(index));
    if (before != m_hovered) {
        updateCard(before);
        updateCard(m_hovered);
    }
}

void ClipGrid::select(const ClipSelection& selection) {
    if (m_selection == selection) {
        return;
    }
    m_selection = selection;
    viewport()->update();
    CardListAccessible::announceFocus(*this);
    Q_EMIT selectionChanged();
}

void ClipGrid::choose(qsizetype index) {
    moveTo(index, Qt::NoModifier);
}

void ClipGrid::chooseAll() {
    ClipSelection all = m_selection;
    all.chooseAll(m_shown);
    select(all);
}

void ClipGrid::clearSelection() {
    select({});
}

void ClipGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), m_look.ground);
    const QRect exposed = event->rect().adjusted(0, -kRing, 0, kRing);
    const ClipGridLayout::Range cards =
        layout().cardsBetween(scroll() + exposed.top(), scroll() + exposed.bottom());
    m_clips.load(cards.first, cards.last);
    for (qsizetype i = cards.first; i <= cards.last; ++i) {
        paintCard(painter, i);
    }
    paintMarks(painter);
}

void ClipGrid::paintCard(QPainter& painter, qsizetype index) {
    const QUuid clip = m_shown.value(index);
    const CardContent* card = m_clips.card(clip);
    if (card == nullptr) {
        m_painter.paintBlank(painter, cardRect(index));
        return;
    }
    const qreal ratio = painter.device()->devicePixelRatio();
    const GridCardState state{
        .age = card->createdAt ? relativeAge(*card->createdAt, m_clock.now()) : QString(),
        .picture =
            m_pictures.picture(GridCardPainter::asked(*card), GridCardPainter::askedSize(), ratio),
        .isSelected = m_selection.contains(clip),
        .isCurrent = hasFocus() && m_selection.current() == clip,
        .isHovered = m_hovered == clip};
    m_painter.paint(painter, cardRect(index), *card, state);
}

void ClipGrid::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    // The focus is to be seen from the start.
    const bool isByKey =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (isByKey && m_selection.isEmpty() && !m_shown.isEmpty()) {
        choose(std::max<qsizetype>(0, visibleCards().first));
    }
    viewport()->update();
    CardListAccessible::announceFocus(*this);
}

void ClipGrid::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void ClipGrid::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    m_ages.start(kAgesEveryMs, this);
    tellVisibleCards();
}

void ClipGrid::hideEvent(QHideEvent* event) {
    QAbstractScrollArea::hideEvent(event);
    m_ages.stop();
    endDragOver();
    endBand();
    m_pictures.setVisible({});
}

void ClipGrid::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_ages.timerId()) {
        viewport()->update();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void ClipGrid::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_painter.setFont(font());
    }
}

}  // namespace quillo
