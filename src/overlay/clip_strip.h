// SPDX-License-Identifier: MIT
#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include "appearance/panel_look.h"
#include "base/clock.h"
#include "library/thumbnails/image_thumbnails.h"
#include "overlay/overlay_clips.h"
#include "overlay/strip_layout.h"

namespace quillo {

/// One row of cards that scrolls sideways. Paints only what is visible; a card costs no widget.
class ClipStrip final : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the strip.
    ClipStrip(const OverlayClips& clips, ImageThumbnails& thumbnails, const Clock& clock,
              QWidget* parent = nullptr);

    /// Moves the ring to a card and scrolls it to the middle as far as the ends allow.
    void selectCard(int index);
    /// Back to the start, the ring on the first card.
    void reset();
    void setLook(const PanelLook& look);
    [[nodiscard]] int selectedIndex() const { return m_selectedIndex; }
    [[nodiscard]] int scrollPosition() const { return m_scroll; }

    /// Asks for the pictures of the first cards, so that the first frame has them.
    void prepareFirstCards();

Q_SIGNALS:
    void cardClicked(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] StripLayout layout() const;
    void scrollTo(int position);
    void clipsChanged();
    void slideIn();
    void pictureReady(const QUuid& clip);
    void paintCards(QPainter& painter, const QRect& exposed);
    void paintRing(QPainter& painter);
    void paintEmptyState(QPainter& painter);
    [[nodiscard]] QPixmap picture(const CardContent& card);
    [[nodiscard]] int cardAt(const QPointF& position) const;

    const OverlayClips& m_clips;
    ImageThumbnails& m_thumbnails;
    const Clock& m_clock;
    PanelLook m_look;
    int m_scroll = 0;
    int m_selectedIndex = 0;
    int m_pressedIndex = -1;
    QUuid m_firstClip;  ///< Of the last painting, to see a new card come in.
    int m_slide = 0;    ///< How far the row still stands to the left of its place.
    QVariantAnimation m_slideAnimation;
};

}  // namespace quillo
