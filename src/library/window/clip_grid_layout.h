// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

namespace quillo {

/// The geometry of the grid: as many columns as fit, cards equally wide within 150 to 180. All in
/// logical pixels; y counts from the start of the content, before scrolling.
struct ClipGridLayout {
    static constexpr int kLeastCardWidth = 150;
    static constexpr int kMostCardWidth = 180;
    static constexpr int kCardHeight = 148;
    static constexpr int kSpacing = 12;
    static constexpr int kRowStep = kCardHeight + kSpacing;
    static constexpr int kSidePadding = 16;
    /// Above the first row and below the last: room for the ring around a card.
    static constexpr int kTopPadding = 4;
    static constexpr int kBottomPadding = 16;

    qsizetype count = 0;
    int viewportWidth = 0;

    /// At least one.
    [[nodiscard]] int columns() const;
    /// Less than kLeastCardWidth only where not even one such card fits.
    [[nodiscard]] int cardWidth() const;
    [[nodiscard]] QRect cardRect(qsizetype index) const;
    /// 0 without cards.
    [[nodiscard]] int contentHeight() const;
    /// The card at a point of the content; -1 between cards and beyond them.
    [[nodiscard]] qsizetype indexAt(QPoint contentPoint) const;

    /// First and last card of the rows that a stretch of the content touches; an empty range
    /// (first > last) without any.
    struct Range {
        qsizetype first = 0;
        qsizetype last = -1;
    };
    [[nodiscard]] Range cardsBetween(int top, int bottom) const;

    /// Cards that stand in a rectangle of rows and columns; the last row may lack some. Empty
    /// (first > last) without any.
    struct Block {
        int firstRow = 0;
        int lastRow = -1;
        int firstColumn = 0;
        int lastColumn = -1;

        [[nodiscard]] bool contains(int row, int column) const {
            return row >= firstRow && row <= lastRow && column >= firstColumn &&
                   column <= lastColumn;
        }
    };
    /// The cards that an area of the content touches.
    [[nodiscard]] Block cardsTouching(const QRect& area) const;
    /// Calls with the index of each card of one block that is not of the other.
    template <typename Visit>
    void forEachBeside(const Block& block, const Block& other, Visit visit) const {
        const int perRow = columns();
        for (int row = block.firstRow; row <= block.lastRow; ++row) {
            if (other.contains(row, block.firstColumn) && other.contains(row, block.lastColumn)) {
                continue;
            }
            for (int column = block.firstColumn; column <= block.lastColumn; ++column) {
                const qsizetype index = qsizetype(row) * perRow + column;
                if (index < count && !other.contains(row, column)) {
                    visit(index);
                }
            }
        }
    }

    /// A place between cards: before the card at `before`, count for the end.
    struct Gap {
        qsizetype before = 0;
        QRect line;  ///< Where a mark of it stands, in the row that is meant.

        friend bool operator==(const Gap&, const Gap&) = default;
    };
    /// The one nearest to a point of the content.
    [[nodiscard]] Gap gapAt(QPoint contentPoint) const;

    /// The scroll position nearest to `scroll` at which a card is seen whole.
    [[nodiscard]] int scrollToShow(qsizetype index, int scroll, int viewportHeight) const;

private:
    [[nodiscard]] int left() const;
};

/// Where a key takes the current card of the grid.
enum class GridMove : quint8 { Left, Right, Up, Down, PageUp, PageDown, First, Last };

/// The place that the move leads to from `index`, -1 for none yet; -1 in an empty grid. What would
/// lead over an end stays where it is, but Down from above a shorter last row goes to its end.
[[nodiscard]] qsizetype movedInGrid(GridMove move, qsizetype index, const ClipGridLayout& layout,
                                    int viewportHeight);

}  // namespace quillo
