// SPDX-License-Identifier: MIT
#include "overlay/clip_strip.h"

#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "appearance/symbols.h"
#include "library/thumbnails/card_painter.h"

namespace quillo {
namespace {

constexpr int kRingWidth = 3;
constexpr int kRingRadius = 12;
constexpr int kSlideDurationMs = 160;
// One notch of a wheel moves about one card.
constexpr double kPixelsPerWheelUnit = StripLayout::kCardWidth / 120.0;

}  // namespace

ClipStrip::ClipStrip(const OverlayClips& clips, ImageThumbnails& thumbnails, const Clock& clock,
                     QWidget* parent)
    : QWidget(parent), m_clips(clips), m_thumbnails(thumbnails), m_clock(clock) {
    setFixedHeight(StripLayout::kHeight);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Clips"));
    m_slideAnimation.setDuration(kSlideDurationMs);
    m_slideAnimation.setEasingCurve(QEasingCurve::OutCubic);
    m_slideAnimation.setStartValue(-(StripLayout::kCardWidth + StripLayout::kSpacing));
    m_slideAnimation.setEndValue(0);
    connect(&m_slideAnimation, &QVariantAnimation::valueChanged, this, [this](const QVariant& at) {
        m_slide = at.toInt();
        update();
    });
    connect(&m_clips, &OverlayClips::refreshed, this, &ClipStrip::clipsChanged);
    connect(&m_thumbnails, &ImageThumbnails::ready, this, &ClipStrip::pictureReady);
}

void ClipStrip::setLook(const PanelLook& look) {
    m_look = look;
    update();
}

StripLayout ClipStrip::layout() const {
    return {int(m_clips.cards().size()), width()};
}

void ClipStrip::selectCard(int index) {
    m_selectedIndex = index;
    m_scroll = layout().scrollToCenter(index);
    update();
}

void ClipStrip::reset() {
    m_scroll = 0;
    m_selectedIndex = 0;
    m_pressedIndex = -1;
    m_slideAnimation.stop();
    m_slide = 0;
    update();
}

void ClipStrip::prepareFirstCards() {
    const StripLayout::Range range = layout().cardsBetween(0, std::max(width(), 1920));
    for (int i = range.first; i <= range.last; ++i) {
        (void)picture(m_clips.cards().at(i));
    }
}

void ClipStrip::clipsChanged() {
    const int count = int(m_clips.cards().size());
    m_selectedIndex = std::clamp(m_selectedIndex, 0, std::max(0, count - 1));
    m_scroll = layout().clampedScroll(m_scroll);
    prepareFirstCards();
    slideIn();
    update();
}

// A card that comes first while the person looks, new or copied again, moves in from the side.
void ClipStrip::slideIn() {
    const QUuid before = std::exchange(
        m_firstClip, m_clips.cards().isEmpty() ? QUuid() : m_clips.cards().constFirst().clip);
    const bool isAnother = !before.isNull() && before != m_firstClip;
    if (isAnother && isVisible() && m_scroll == 0) {
        m_slideAnimation.stop();
        m_slideAnimation.start();
    }
}

void ClipStrip::pictureReady(const QUuid& clip) {
    const QList<CardContent>& cards = m_clips.cards();
    for (int i = 0; i < cards.size(); ++i) {
        if (cards.at(i).clip == clip) {
            update(layout().cardRect(i).translated(-m_scroll, 0));
        }
    }
}

void ClipStrip::scrollTo(int position) {
    const int clamped = layout().clampedScroll(position);
    if (clamped != m_scroll) {
        m_scroll = clamped;
        update();
    }
}

void ClipStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_scroll = layout().clampedScroll(m_scroll);
}

void ClipStrip::wheelEvent(QWheelEvent* event) {
    const QPoint pixels = event->pixelDelta();
    const QPoint angle = event->angleDelta();
    const int delta = pixels.isNull()
                          ? int((angle.x() != 0 ? angle.x() : angle.y()) * kPixelsPerWheelUnit)
                          : (pixels.x() != 0 ? pixels.x() : pixels.y());
    scrollTo(m_scroll - delta);
    event->accept();
}

int ClipStrip::cardAt(const QPointF& position) const {
    return layout().indexAt(position.toPoint() + QPoint(m_scroll, 0));
}

void ClipStrip::mousePressEvent(QMouseEvent* event) {
    m_pressedIndex = event->button() == Qt::LeftButton ? cardAt(event->position()) : -1;
    if (m_pressedIndex < 0) {
        event->ignore();
    }
}

void ClipStrip::mouseReleaseEvent(QMouseEvent* event) {
    const int index = cardAt(event->position());
    if (event->button() == Qt::LeftButton && index >= 0 && index == m_pressedIndex) {
        Q_EMIT cardClicked(index);
    }
    m_pressedIndex = -1;
}

void ClipStrip::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    if (m_clips.cards().isEmpty()) {
        paintEmptyState(painter);
        return;
    }
    const int shift = m_slide - m_scroll;
    painter.translate(shift, 0);
    paintCards(painter, event->rect().translated(-shift, 0));
    paintRing(painter);
}

void ClipStrip::paintCards(QPainter& painter, const QRect& exposed) {
    const CardPainter cardPainter(m_look, font());
    const Timestamp now = m_clock.now();
    const StripLayout::Range range = layout().cardsBetween(exposed.left(), exposed.right());
    for (int i = range.first; i <= range.last; ++i) {
        const CardContent& card = m_clips.cards().at(i);
        CardState state;
        state.index = i < 9 ? i : -1;
        state.age = card.createdAt ? ageText(*card.createdAt, now) : QString();
        state.thumbnail = picture(card);
        state.imageSize = card.hasImage ? m_thumbnails.imageSize(card.clip) : QSize();
        cardPainter.paint(painter, layout().cardRect(i), card, state);
    }
}

QPixmap ClipStrip::picture(const CardContent& card) {
    if (!card.hasImage) {
        return {};
    }
    // Twice the body's larger side covers any aspect at any usual scale.
    const int side = int(StripLayout::kCardWidth * 2 * devicePixelRatioF());
    return m_thumbnails.thumbnail(card.clip, QSize(side, side));
}

void ClipStrip::paintRing(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_look.palette().accent, kRingWidth));
    painter.setBrush(Qt::NoBrush);
    constexpr qreal kInset = kRingWidth / 2.0;
    painter.drawRoundedRect(
        QRectF(layout().cardRect(m_selectedIndex)).adjusted(kInset, kInset, -kInset, -kInset),
        kRingRadius, kRingRadius);
}

void ClipStrip::paintEmptyState(QPainter& painter) {
    const EmptyState state = m_clips.emptyState();
    const QPixmap symbol =
        symbolPixmap(state.symbol, 48, m_look.palette().secondaryText, devicePixelRatioF());
    painter.drawPixmap(QPoint((width() - 48) / 2, 72), symbol);
    QFont title = font();
    title.setPixelSize(16);
    title.setWeight(QFont::DemiBold);
    painter.setFont(title);
    painter.setPen(m_look.palette().primaryText);
    painter.drawText(QRect(0, 134, width(), 24), Qt::AlignCenter, state.title);
    QFont subtitle = font();
    subtitle.setPixelSize(13);
    painter.setFont(subtitle);
    painter.setPen(m_look.palette().secondaryText);
    painter.drawText(QRect(0, 160, width(), 22), Qt::AlignCenter, state.subtitle);
}

}  // namespace quillo
