// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QRect>

#include "appearance/panel_look.h"
#include "library/thumbnails/card_content.h"
#include "library/thumbnails/card_painter.h"
#include "library/thumbnails/card_texts.h"

namespace quillo {

/// One card with everything that its painting needs.
struct CardFace {
    QRect area;
    const CardContent& card;
    const CardState& state;
    const CardLook& look;
    Ground ground;  ///< What the card's texts stand on.
};

/// Draws what stands between a card's header and its footer.
class CardBodyPainter final {
public:
    /// Both must outlive this.
    CardBodyPainter(QPainter& painter, CardTexts& texts) : m_painter(painter), m_texts(texts) {}

    void paint(const CardFace& face);

private:
    void paintSwatch(const CardFace& face);
    void paintImage(const CardFace& face);
    void paintImageBadges(const CardFace& face);
    void paintImageBadge(const QRect& body, const QString& text, Qt::Alignment side);
    void paintLink(const CardFace& face);
    void paintFile(const CardFace& face);
    void paintFilePicture(const CardFace& face);
    void paintRichText(const CardFace& face);
    void paintPlainText(const CardFace& face);
    void paintSymbol(const QRect& place, int side, const QColor& color, const QString& name);

    QPainter& m_painter;
    CardTexts& m_texts;
};

/// Draws a picture with its top left corner on a whole device pixel, so that one that was made for
/// the painter's scale stays sharp. place is in logical coordinates.
void drawSnapped(QPainter& painter, const QRectF& place, const QPixmap& picture);

/// The logical size that a pixmap was made for.
[[nodiscard]] inline QSizeF logicalSize(const QPixmap& pixmap) {
    return QSizeF(pixmap.size()) / pixmap.devicePixelRatio();
}

/// A square in the middle of a row's height.
[[nodiscard]] inline QRect squareIn(const QRect& row, int left, int side) {
    return {left, row.top() + (row.height() - side) / 2, side, side};
}

/// The size in the middle of an area.
[[nodiscard]] inline QRectF centered(const QSizeF& size, const QRect& area) {
    return {QRectF(area).center() - QPointF(size.width() / 2, size.height() / 2), size};
}

}  // namespace quillo
