// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QSize>

namespace quillo {

/// The fixed geometry of the strip: one row of equal cards. All in logical pixels; x counts from
/// the start of the content, before scrolling.
struct StripLayout {
    static constexpr int kCardWidth = 280;
    static constexpr int kCardHeight = 240;
    static constexpr int kSpacing = 12;
    static constexpr int kStep = kCardWidth + kSpacing;  ///< From one card to the next.
    static constexpr int kSidePadding = 16;
    static constexpr int kTopPadding = 12;
    static constexpr int kHeight = 256;

    int cardCount = 0;
    int viewportWidth = 0;

    [[nodiscard]] QRect cardRect(int index) const;
    /// The length of the whole row with its padding; 0 without cards.
    [[nodiscard]] int contentWidth() const;
    [[nodiscard]] int maxScroll() const;
    [[nodiscard]] int clampedScroll(int scroll) const;
    /// The scroll position that centres a card as far as the ends allow.
    [[nodiscard]] int scrollToCenter(int index) const;
    /// The card at a point of the content; -1 between cards and beyond them.
    [[nodiscard]] int indexAt(QPoint contentPoint) const;
    /// First and last card that a stretch of the content touches; an empty range (first > last)
    /// without any.
    struct Range {
        int first = 0;
        int last = -1;
    };
    [[nodiscard]] Range cardsBetween(int left, int right) const;
};

}  // namespace quillo
