// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_layout.h"

#include <algorithm>

namespace quillo {

int ClipGridLayout::columns() const {
    const int width = viewportWidth - 2 * kSidePadding;
    return std::max(1, (width + kSpacing) / (kLeastCardWidth + kSpacing));
}

int ClipGridLayout::cardWidth() const {
    const int width = viewportWidth - 2 * kSidePadding - (columns() - 1) * kSpacing;
    return std::clamp(width / columns(), 1, kMostCardWidth);
}

// What is left over lies on both sides.
int ClipGridLayout::left() const {
    const int used = columns() * (cardWidth() + kSpacing) - kSpacing;
    return std::max(0, (viewportWidth - used) / 2);
}

QRect ClipGridLayout::cardRect(qsizetype index) const {
    const int column = int(index % columns());
    const int row = int(index / columns());
    return {left() + column * (cardWidth() + kSpacing), kTopPadding + row * kRowStep, cardWidth(),
            kCardHeight};
}

int ClipGridLayout::contentHeight() const {
    return count == 0 ? 0 : cardRect(count - 1).top() + kCardHeight + kBottomPadding;
}

qsizetype ClipGridLayout::indexAt(QPoint contentPoint) const {
    const int x = contentPoint.x() - left();
    const int y = contentPoint.y() - kTopPadding;
    if (x < 0 || y < 0) {
        return -1;
    }
    const int column = x / (cardWidth() + kSpacing);
    const qsizetype index = qsizetype(y / kRowStep) * columns() + column;
    const bool isThere = column < columns() && index < count;
    return isThere && cardRect(index).contains(contentPoint) ? index : -1;
}

ClipGridLayout::Range ClipGridLayout::cardsBetween(int top, int bottom) const {
    const int firstRow = std::max(0, top - kTopPadding) / kRowStep;
    const int lastRow = bottom < kTopPadding ? -1 : (bottom - kTopPadding) / kRowStep;
    return {qsizetype(firstRow) * columns(),
            std::min(count, qsizetype(lastRow + 1) * columns()) - 1};
}

ClipGridLayout::Block ClipGridLayout::cardsTouching(const QRect& area) const {
    // The first card that ends at or behind the near edge, the last that starts before the far one.
    const auto firstOf = [](int near, int size, int step) {
        return near < size ? 0 : (near - size) / step + 1;
    };
    const auto lastOf = [](int far, int step) { return far < 0 ? -1 : far / step; };
    const int step = cardWidth() + kSpacing;
    const int rows = int((count + columns() - 1) / columns());
    const QRect cards = area.translated(-left(), -kTopPadding);
    return {.firstRow = firstOf(cards.top(), kCardHeight, kRowStep),
            .lastRow = std::min(lastOf(cards.bottom(), kRowStep), rows - 1),
            .firstColumn = firstOf(cards.left(), cardWidth(), step),
            .lastColumn = std::min(lastOf(cards.right(), step), columns() - 1)};
}

ClipGridLayout::Gap ClipGridLayout::gapAt(QPoint contentPoint) const {
    constexpr int kLineWidth = 3;
    const int step = cardWidth() + kSpacing;
    const int lastRow = int(std::max<qsizetype>(0, count - 1) / columns());
    const int row =
        std::clamp((contentPoint.y() - kTopPadding + kSpacing / 2) / kRowStep, 0, lastRow);
    const int inRow = int(std::min<qsizetype>(columns(), count - qsizetype(row) * columns()));
    const int column =
        std::clamp((contentPoint.x() - left() + (kSpacing + step) / 2) / step, 0, inRow);
    return {qsizetype(row) * columns() + column,
            QRect(left() + column * step - (kSpacing + kLineWidth) / 2,
                  kTopPadding + row * kRowStep, kLineWidth, kCardHeight)};
}

int ClipGridLayout::scrollToShow(qsizetype index, int scroll, int viewportHeight) const {
    const QRect card = cardRect(index);
    // With the space around it, so that the first row shows the content's start.
    const int highest = card.top() - kTopPadding;
    const int lowest = card.bottom() + 1 + kSpacing - viewportHeight;
    return std::min(std::max(scroll, lowest), highest);
}

qsizetype movedInGrid(GridMove move, qsizetype index, const ClipGridLayout& layout,
                      int viewportHeight) {
    const qsizetype last = layout.count - 1;
    if (index < 0 || last < 0) {
        return move == GridMove::Last ? last : std::min<qsizetype>(0, last);
    }
    const int columns = layout.columns();
    const int page = std::max(1, viewportHeight / ClipGridLayout::kRowStep) * columns;
    const auto up = [&](int step) { return index >= step ? index - step : index % columns; };
    const auto down = [&](int step) {
        const qsizetype lastRow = last / columns;
        const bool isInLastRow = index / columns == lastRow;
        return isInLastRow ? index
                           : std::min({index + step, lastRow * columns + index % columns, last});
    };
    switch (move) {
        case GridMove::Left:
            return std::max<qsizetype>(0, index - 1);
        case GridMove::Right:
            return std::min(last, index + 1);
        case GridMove::Up:
            return up(columns);
        case GridMove::Down:
            return down(columns);
        case GridMove::PageUp:
            return up(page);
        case GridMove::PageDown:
            return down(page);
        case GridMove::First:
            return 0;
        case GridMove::Last:
            return last;
    }
    return index;
}

}  // namespace quillo
