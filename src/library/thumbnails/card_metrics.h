// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include "library/thumbnails/card_content.h"

namespace quillo {

/// The geometry of a card, in logical pixels: what painting and the making of pictures share.
struct CardMetrics {
    static constexpr int kCornerRadius = 12;
    static constexpr int kMargin = 12;
    static constexpr int kTextMargin = 14;
    static constexpr int kHeaderHeight = 36;
    static constexpr int kFooterHeight = 36;
    static constexpr int kTileSide = 18;
    static constexpr int kButtonSide = 24;
    static constexpr int kLinkImageHeight = 112;
    /// Beneath a file's picture: its name, its kind and size.
    static constexpr int kFileTextHeight = 52;

    [[nodiscard]] static QRect bodyArea(const QRect& card) {
        return card.adjusted(0, kHeaderHeight, 0, -kFooterHeight);
    }

    /// The place of the card's picture; empty for a card that has none.
    [[nodiscard]] static QRect pictureArea(const QRect& card, CardPreview preview) {
        const QRect body = bodyArea(card);
        switch (preview) {
            case CardPreview::Image:
                return body;
            case CardPreview::Link:
                return QRect(body.topLeft(), QSize(body.width(), kLinkImageHeight));
            case CardPreview::File:
                return body.adjusted(kMargin, 2, -kMargin, -kFileTextHeight);
            default:
                return {};
        }
    }
};

}  // namespace quillo
