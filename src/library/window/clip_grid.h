// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <functional>
#include <memory>
#include <optional>

#include "base/clock.h"
#include "library/thumbnails/card_pictures.h"
#include "library/window/clip_grid_band.h"
#include "library/window/clip_grid_layout.h"
#include "library/window/clip_grid_reordering.h"
#include "library/window/clip_grid_scroller.h"
#include "library/window/clip_selection.h"
#include "library/window/grid_card_painter.h"
#include "library/window/library_clips.h"

class QMimeData;

namespace quillo {

/// The library's cards. Reads and paints only what is seen; a card costs no widget, at any size of
/// history. Owns the selection; reports what the person asks for, and what follows from it is the
/// owner's. While the list changes, what the person looks at stays where it is. Main thread.
class ClipGrid final : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// What dragged clips give to the program that they are dropped on; null for none.
    using DragData = std::function<std::unique_ptr<QMimeData>(const QList<QUuid>& clips)>;

    /// Everything must outlive the grid.
    ClipGrid(LibraryClips& clips, CardPictures& pictures, const Clock& clock,
             QWidget* parent = nullptr);

    void setLook(const LibraryLook& look);
    void setDragData(DragData dragData) { m_dragData = std::move(dragData); }
    /// Keeps nothing of clips that are gone.
    void forgetTexts() { m_painter.forgetTexts(); }

    [[nodiscard]] LibraryClips& clips() const { return m_clips; }
    [[nodiscard]] const Clock& clock() const { return m_clock; }
    [[nodiscard]] const ClipSelection& selection() const { return m_selection; }
    /// In the order in which they are shown.
    [[nodiscard]] QList<QUuid> selectedClips() const;
    /// The clips of the drag that is under way; none when there is none.
    [[nodiscard]] const QList<QUuid>& draggedClips() const { return m_dragged; }
    /// -1 for none.
    [[nodiscard]] qsizetype currentIndex() const;

    /// Selects one clip alone and brings it into sight.
    void choose(qsizetype index);
    void chooseAll();
    void clearSelection();

    /// In the viewport's coordinates; may lie outside what is seen.
    [[nodiscard]] QRect cardRect(qsizetype index) const;
    /// Those that are seen, partly too.
    [[nodiscard]] ClipGridLayout::Range visibleCards() const;
    /// -1 for none.
    [[nodiscard]] qsizetype indexAt(QPoint viewportPoint) const;

Q_SIGNALS:
    /// A band that is drawn over the cards tells of it when it is let go.
    void selectionChanged();
    /// Return, or a double click: the selected clips are meant.
    void activated();
    void deleteRequested();
    /// The clips are to stand elsewhere in the pinboard that is shown.
    void moveRequested(const ClipMove& move);
    /// For the selected clips; the anchor is in the viewport's coordinates.
    void menuRequested(const QRect& anchor);
    /// A letter, which belongs into the search field.
    void typed(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] ClipGridLayout layout() const;
    [[nodiscard]] ClipGridLayout listedLayout() const;
    [[nodiscard]] int scroll() const;
    void listReplaced();
    void listChanged();
    [[nodiscard]] QUuid anchorAmong(const QList<QUuid>& seen) const;
    [[nodiscard]] std::optional<int> anchoredScroll(const QList<QUuid>& before,
                                                    const ClipGridLayout& earlier);
    void updateRange();
    void tellVisibleCards();
    void updateCard(const QUuid& clip);
    void hover(qsizetype index);
    void select(const ClipSelection& selection);
    void moveTo(qsizetype index, Qt::KeyboardModifiers modifiers);
    [[nodiscard]] bool moveByKey(const QKeyEvent& event);
    [[nodiscard]] bool reorderByKey(const QKeyEvent& event);
    void reorder(const std::optional<ClipMove>& move);
    void press(qsizetype index, Qt::KeyboardModifiers modifiers);
    void startDrag();
    void dragOver(QPoint position);
    void endDragOver();
    void startBand(Qt::KeyboardModifiers modifiers);
    void drawBandTo(QPoint position);
    void endBand();
    void redrawMarks(const QList<QUuid>& before);
    void paintMarks(QPainter& painter) const;
    void paintCard(QPainter& painter, qsizetype index);
    [[nodiscard]] QPixmap dragPixmap(qsizetype index, qsizetype count);

    LibraryClips& m_clips;
    CardPictures& m_pictures;
    const Clock& m_clock;
    DragData m_dragData;
    LibraryLook m_look;
    GridCardPainter m_painter;
    ClipGridScroller m_scroller;
    ClipSelection m_selection;
    QList<QUuid> m_shown;  ///< The list as it was taken over last, and how it was laid out.
    ClipGridLayout m_laidOut;
    QUuid m_anchor;  ///< Keeps its height until the person scrolls.
    QUuid m_hovered;
    QPoint m_pressPosition;
    qsizetype m_pressed = -1;
    bool m_choosesOnRelease = false;
    QList<QUuid> m_dragged;
    QPoint m_pointer;  ///< Of a drag or a band, in the viewport's coordinates.
    std::optional<ClipGridLayout::Gap> m_gap;  ///< Where what is dragged would go.
    std::optional<ClipMove> m_move;            ///< What letting it go there does.
    std::optional<ClipGridBand> m_band;
    bool m_isReordering = false;  ///< The next change of the list is the person's own.
    QBasicTimer m_ages;
};

}  // namespace quillo
