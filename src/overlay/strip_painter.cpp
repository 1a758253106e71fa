// SPDX-License-Identifier: MIT
#include "overlay/strip_painter.h"

#include "appearance/fonts.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kRingWidth = 3;
constexpr int kRingRadius = 12;
constexpr int kBadgeCount = 9;
constexpr int kEmptySymbolSize = 46;
constexpr double kDraggedOpacity = 0.4;
constexpr QSize kCardSize(StripLayout::kCardWidth, StripLayout::kCardHeight);

}  // namespace

StripPainter::StripPainter(const OverlayClips& clips, CardPictures& pictures,
                           const StripAnimator& animator, const Clock& clock)
    : m_clips(clips),
      m_pictures(pictures),
      m_animator(animator),
      m_clock(clock),
      m_cards(m_look, m_font) {}

void StripPainter::setLook(const PanelLook& look) {
    m_look = look;
    m_cards.setLook(look);
}

void StripPainter::setFont(const QFont& font) {
    m_font = font;
    m_cards.setFont(font);
}

void StripPainter::paint(QPainter& painter, const QRect& exposed, const StripScene& scene) {
    if (m_clips.cards().isEmpty()) {
        paintEmptyState(painter, QRect(0, 0, scene.layout.viewportWidth, StripLayout::kHeight));
        return;
    }
    painter.translate(-scene.scroll, 0);
    paintCards(painter, exposed.translated(scene.scroll, 0), scene);
    paintRing(painter, scene);
}

void StripPainter::paintCards(QPainter& painter, const QRect& exposed, const StripScene& scene) {
    // While cards move, one may be seen far from its place.
    const StripLayout::Range seen =
        m_animator.isMoving() ? StripLayout::Range{0, int(m_clips.cards().size()) - 1}
                              : scene.layout.cardsBetween(exposed.left(), exposed.right());
    const qreal ratio = painter.device()->devicePixelRatio();
    for (int i = seen.first; i <= seen.last; ++i) {
        const CardContent& card = m_clips.cards().at(i);
        const QRect area = scene.layout.cardRect(i).translated(m_animator.offsetOf(card.clip), 0);
        if (area.intersects(exposed)) {
            painter.setOpacity(card.clip == scene.dragged ? kDraggedOpacity : 1.0);
            m_cards.paint(painter, area, card, stateOf(i, scene, ratio));
        }
    }
    painter.setOpacity(1.0);
}

CardState StripPainter::stateOf(int index, const StripScene& scene, qreal ratio) {
    const CardContent& card = m_clips.cards().at(index);
    CardState state;
    state.index = index < kBadgeCount ? index : -1;
    state.age = card.createdAt ? ageText(*card.createdAt, m_clock.now()) : QString();
    state.picture = m_pictures.picture(card, kCardSize, ratio);
    state.isHovered = index == scene.hoveredIndex && scene.dragged.isNull();
    state.showsDelete = state.isHovered;
    state.showsGroup = state.isHovered;
    state.hoveredButton = state.isHovered ? scene.hoveredButton : CardButton::None;
    state.isDropTarget = !scene.dropTarget.isNull() && card.clip == scene.dropTarget;
    return state;
}

QPixmap StripPainter::cardPixmap(int index, qreal ratio, qreal scale) {
    QPixmap pixmap(kCardSize * ratio * scale);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.scale(scale, scale);
    const QRect area(QPoint(0, 0), kCardSize);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_look.palette().cardBase);
    painter.drawRoundedRect(area, kRingRadius, kRingRadius);
    StripScene scene;
    scene.dragged = m_clips.cards().at(index).clip;
    m_cards.paint(painter, area, m_clips.cards().at(index), stateOf(index, scene, ratio));
    return pixmap;
}

void StripPainter::paintRing(QPainter& painter, const StripScene& scene) const {
    const QUuid clip = m_clips.cards().value(scene.selectedIndex).clip;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_look.palette().accent, kRingWidth));
    painter.setBrush(Qt::NoBrush);
    constexpr qreal kInset = kRingWidth / 2.0;
    const QRect card =
        scene.layout.cardRect(scene.selectedIndex).translated(m_animator.offsetOf(clip), 0);
    painter.drawRoundedRect(QRectF(card).adjusted(kInset, kInset, -kInset, -kInset), kRingRadius,
                            kRingRadius);
}

void StripPainter::paintEmptyState(QPainter& painter, const QRect& area) const {
    const EmptyState state = m_clips.emptyState();
    const Palette& colors = m_look.palette();
    painter.drawPixmap(QPoint((area.width() - kEmptySymbolSize) / 2, 78),
                       symbolPixmap(state.symbol, kEmptySymbolSize, colors.secondaryText,
                                    painter.device()->devicePixelRatio()));
    const auto line = [&](const QString& text, int top, int size, QFont::Weight weight,
                          const QColor& color) {
        painter.setFont(sizedFont(m_font, size, weight));
        painter.setPen(color);
        painter.drawText(QRect(0, top, area.width(), 24), Qt::AlignCenter, text);
    };
    line(state.title, 131, 16, QFont::DemiBold, colors.primaryText);
    line(state.subtitle, 159, 13, QFont::Normal, colors.secondaryText);
}

}  // namespace quillo
