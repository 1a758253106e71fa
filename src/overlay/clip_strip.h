// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "overlay/strip_painter.h"
#include "overlay/strip_scroller.h"

class QMimeData;

namespace quillo {

/// One row of cards that scrolls sideways. Paints only what is visible; a card costs no widget.
/// Shows a selection and reports what the person does; what follows from it is the owner's.
class ClipStrip final : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the strip.
    ClipStrip(const OverlayClips& clips, CardPictures& pictures, const Clock& clock,
              QWidget* parent = nullptr);

    /// Moves the ring to a card and scrolls it to the middle as far as the ends allow.
    void selectCard(int index);
    /// Moves the ring and leaves the scrolling as it is.
    void setSelectedIndex(int index);
    /// The selected card has moved: one that is still seen, partly, is then seen whole.
    void followSelected(int index);
    /// Back to the start, the ring on the first card.
    void reset();
    void setLook(const PanelLook& look);
    void setImageBadgePx(int pixels);
    /// Keeps nothing of clips that are gone.
    void forgetTexts() { m_painter.forgetTexts(); }
    /// What a card gives to the program that it is dropped on; null for a card that is gone.
    using DragData = std::function<std::unique_ptr<QMimeData>(const QUuid& clip)>;
    void setDragData(DragData dragData) { m_dragData = std::move(dragData); }

    [[nodiscard]] const OverlayClips& clips() const { return m_clips; }
    [[nodiscard]] int selectedIndex() const { return m_selectedIndex; }
    [[nodiscard]] int scrollPosition() const { return m_scroller.position(); }
    /// How many cards are seen whole at once, at least one.
    [[nodiscard]] int cardsPerPage() const;
    /// Where a card is, in the strip's coordinates; may lie outside what is visible.
    [[nodiscard]] QRect cardRect(int index) const;

    /// Asks for the pictures of the first cards, so that the first frame has them.
    void prepareFirstCards();

Q_SIGNALS:
    void cardClicked(int index);
    void deleteRequested(int index);
    /// The anchor is in the strip's coordinates.
    void groupsRequested(int index, const QRect& anchor);
    void menuRequested(int index, const QRect& anchor);
    /// A card of this strip is dragged over the card at index.
    void draggedOver(const QUuid& dragged, int index);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct Place {
        int index = -1;
        CardButton button = CardButton::None;

        friend bool operator==(const Place&, const Place&) = default;
    };

    [[nodiscard]] StripLayout layout() const;
    [[nodiscard]] Place placeAt(QPoint position) const;
    [[nodiscard]] StripScene scene() const;
    void clipsChanged();
    void pictureReady(const QUuid& clip);
    void scrolled();
    void hover(std::optional<QPoint> position);
    void press(const Place& place);
    void startDrag();
    void dragOver(const QPoint& position);
    void endDrag();
    void tellVisibleCards();
    bool showTip(const QPoint& position);

    const OverlayClips& m_clips;
    CardPictures& m_pictures;
    StripScroller m_scroller;
    StripAnimator m_animator;
    StripPainter m_painter;
    DragData m_dragData;
    QList<QUuid> m_shown;  ///< Of the last list, to see what moved.
    int m_selectedIndex = 0;
    Place m_hovered;
    Place m_pressed;
    QPoint m_pressPosition;
    std::optional<int> m_grip;  ///< Where the content is held while it is dragged along.
    QUuid m_dragged;
    QUuid m_dropTarget;
    QBasicTimer m_edgeTimer;
    int m_edgeStep = 0;
};

}  // namespace quillo
