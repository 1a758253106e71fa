// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QString>

#include "appearance/panel_look.h"
#include "library/thumbnails/card_content.h"

namespace quillo {

/// What varies from one painting of a card to the next.
struct CardState {
    int index = -1;  ///< The digit on its badge less one; none when negative.
    QString age;
    QPixmap thumbnail;  ///< Null while it is being decoded.
    QSize imageSize;    ///< Of the picture itself; empty while unknown.
};

/// One card with everything that its painting needs.
struct CardFace {
    const CardContent& card;
    const CardState& state;
    CardLook look;
};

/// Draws cards of 280 × 240 logical pixels. Holds no card; cheap to make. Main thread.
class CardPainter final {
public:
    /// look must outlive the painter.
    CardPainter(const PanelLook& look, const QFont& font);

    /// Draws one card into area, in the painter's logical coordinates.
    void paint(QPainter& painter, const QRect& area, const CardContent& card,
               const CardState& state) const;

    /// The part of a card that shows its picture or text.
    [[nodiscard]] static QRect bodyArea(const QRect& card);

private:
    void paintGround(QPainter& painter, const QRect& area, const QColor& ground) const;
    void paintHeader(QPainter& painter, const QRect& area, const CardFace& face) const;
    void paintBody(QPainter& painter, const QRect& area, const CardFace& face) const;
    void paintSwatch(QPainter& painter, const QRect& body, const CardFace& face) const;
    void paintImage(QPainter& painter, const QRect& body, const CardState& state) const;
    void paintText(QPainter& painter, const QRect& body, const CardFace& face) const;
    void paintFooter(QPainter& painter, const QRect& area, const CardFace& face) const;
    void paintBadge(QPainter& painter, const QRect& footer, const CardFace& face) const;

    const PanelLook& m_look;
    QFont m_bodyFont;
    QFont m_labelFont;
    QFont m_smallFont;
};

}  // namespace quillo
