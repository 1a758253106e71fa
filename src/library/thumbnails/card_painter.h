// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QString>

#include "appearance/palette.h"
#include "library/thumbnails/card_content.h"

namespace quillo {

/// What varies from one painting of a card to the next.
struct CardState {
    int index = -1;  ///< The digit on its badge less one; none when negative.
    QString age;
    QPixmap thumbnail;  ///< Null while it is being decoded.
    QSize imageSize;    ///< Of the picture itself; empty while unknown.
};

/// Draws cards of 280 × 240 logical pixels. Holds no card; cheap to make. Main thread.
class CardPainter final {
public:
    CardPainter(const Palette& palette, const QFont& font);

    /// Draws one card into area, in the painter's logical coordinates.
    void paint(QPainter& painter, const QRect& area, const CardContent& card,
               const CardState& state) const;

    /// The part of a card that shows its picture or text.
    [[nodiscard]] static QRect bodyArea(const QRect& card);

private:
    void paintGround(QPainter& painter, const QRect& area, const QColor& ground) const;
    void paintHeader(QPainter& painter, const QRect& area, const CardContent& card,
                     const CardState& state) const;
    void paintBody(QPainter& painter, const QRect& area, const CardContent& card,
                   const CardState& state) const;
    void paintSwatch(QPainter& painter, const QRect& body, const CardContent& card) const;
    void paintImage(QPainter& painter, const QRect& card, const CardState& state) const;
    void paintText(QPainter& painter, const QRect& body, const QString& text) const;
    void paintFooter(QPainter& painter, const QRect& area, const CardContent& card,
                     const CardState& state) const;

    const Palette& m_palette;
    QFont m_bodyFont;
    QFont m_labelFont;
    QFont m_smallFont;
};

}  // namespace quillo
