// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QUuid>

#include "appearance/panel_look.h"
#include "base/clock.h"
#include "library/thumbnails/card_painter.h"
#include "library/thumbnails/card_pictures.h"
#include "overlay/overlay_clips.h"
#include "overlay/strip_animator.h"
#include "overlay/strip_layout.h"

namespace quillo {

/// What varies from one painting of the strip to the next.
struct StripScene {
    StripLayout layout;
    int scroll = 0;
    int selectedIndex = 0;
    int hoveredIndex = -1;
    CardButton hoveredButton = CardButton::None;
    QUuid dropTarget;
    QUuid dragged;  ///< Drawn faint where it stands.
};

/// Draws the cards that can be seen, the ring around the selected one, or what is said where there
/// are none. Main thread.
class StripPainter final {
public:
    /// Everything must outlive the painter.
    StripPainter(const OverlayClips& clips, CardPictures& pictures, const StripAnimator& animator,
                 const Clock& clock);

    void setLook(const PanelLook& look);
    void setFont(const QFont& font);
    /// Forgets what was laid out, as when clips are gone for good.
    void forgetTexts() { m_cards.forgetTexts(); }
    void setImageBadgePx(int pixels) { m_cards.setImageBadgePx(pixels); }

    /// exposed is in the strip's coordinates.
    void paint(QPainter& painter, const QRect& exposed, const StripScene& scene);
    /// One card as it is dragged, without its neighbours.
    [[nodiscard]] QPixmap cardPixmap(int index, qreal ratio, qreal scale);

private:
    void paintCards(QPainter& painter, const QRect& exposed, const StripScene& scene);
    [[nodiscard]] CardState stateOf(int index, const StripScene& scene, qreal ratio);
    void paintRing(QPainter& painter, const StripScene& scene) const;
    void paintEmptyState(QPainter& painter, const QRect& area) const;

    const OverlayClips& m_clips;
    CardPictures& m_pictures;
    const StripAnimator& m_animator;
    const Clock& m_clock;
    PanelLook m_look;
    QFont m_font;
    CardPainter m_cards;
};

}  // namespace quillo
