// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_body_painter.h"

#include <QFontMetrics>
#include <QPainterPath>

#include "appearance/symbols.h"
#include "library/thumbnails/card_metrics.h"
#include "library/thumbnails/rich_preview.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using Metrics = CardMetrics;

QRect textArea(const QRect& card) {
    return CardMetrics::bodyArea(card).adjusted(Metrics::kTextMargin, 0, -Metrics::kTextMargin, 0);
}

QString resolutionText(const QSize& size) {
    return size.isEmpty() ? QString() : u"%1x%2"_s.arg(size.width()).arg(size.height());
}

}  // namespace

void drawSnapped(QPainter& painter, const QRectF& place, const QPixmap& picture) {
    const QTransform toDevice = painter.deviceTransform();
    if (toDevice.type() > QTransform::TxScale) {
        painter.drawPixmap(place, picture, QRectF());
        return;
    }
    const QPointF corner = toDevice.map(place.topLeft());
    const QPointF snapped = QPointF(corner.toPoint());
    painter.drawPixmap(place.translated(toDevice.inverted().map(snapped) - place.topLeft()),
                       picture, QRectF(QPointF(), QSizeF(picture.size())));
}

void CardBodyPainter::paint(const CardFace& face) {
    const CardPicture& picture = face.state.picture;
    switch (face.card.preview) {
        case CardPreview::Swatch:
            return paintSwatch(face);
        case CardPreview::Image:
            return paintImage(face);
        case CardPreview::File:
            return paintFile(face);
        case CardPreview::Link:
            return picture.thumbnail.isNull() && face.card.title.isEmpty() ? paintPlainText(face)
                                                                           : paintLink(face);
        case CardPreview::RichText:
            return picture.richText ? paintRichText(face) : paintPlainText(face);
        case CardPreview::Text:
            return paintPlainText(face);
    }
}

void CardBodyPainter::paintSwatch(const CardFace& face) {
    const QRect body = Metrics::bodyArea(face.area);
    const QRect swatch = body.adjusted(Metrics::kMargin, 0, -Metrics::kMargin, -44);
    // Without an outline the card's own colour would be no swatch at all.
    const bool isLost = contrastRatio(*face.card.swatch, face.ground.color) < 1.1;
    m_painter.setPen(isLost ? QPen(face.look.secondaryText, 1) : QPen(Qt::NoPen));
    m_painter.setBrush(*face.card.swatch);
    const qreal inset = isLost ? 0.5 : 0;
    m_painter.drawRoundedRect(QRectF(swatch).adjusted(inset, inset, -inset, -inset), 10, 10);
    m_painter.setPen(face.look.primaryText);
    m_texts.drawLine(m_painter,
                     QRect(body.left() + Metrics::kTextMargin, swatch.bottom() + 8,
                           body.width() - 2 * Metrics::kTextMargin, 22),
                     CardFont::Fixed, face.card.body.trimmed());
}

void CardBodyPainter::paintImage(const CardFace& face) {
    const QRect body = Metrics::bodyArea(face.area);
    const QPixmap& picture = face.state.picture.thumbnail;
    if (picture.isNull()) {
        paintSymbol(body, 40, face.look.secondaryText, face.card.symbol);
    } else {
        drawSnapped(m_painter, centered(logicalSize(picture), body), picture);
    }
    paintImageBadges(face);
}

void CardBodyPainter::paintImageBadges(const CardFace& face) {
    const QRect body = Metrics::bodyArea(face.area);
    paintImageBadge(body, resolutionText(face.state.picture.imageSize), Qt::AlignLeft);
    paintImageBadge(body, face.card.sizeText, Qt::AlignRight);
}

void CardBodyPainter::paintImageBadge(const QRect& body, const QString& text, Qt::Alignment side) {
    constexpr int kPadding = 6;
    constexpr int kDistance = 10;
    constexpr int kRadius = 4;
    if (text.isEmpty()) {
        return;
    }
    const int height = QFontMetrics(m_texts.font(CardFont::ImageBadge)).height() + 6;
    const int width = m_texts.width(CardFont::ImageBadge, text) + 2 * kPadding;
    const int left = side.testFlag(Qt::AlignLeft) ? body.left() + kDistance
                                                  : body.right() + 1 - kDistance - width;
    const QRect badge(left, body.bottom() + 1 - kDistance - height, width, height);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(QColor(0, 0, 0, 153));
    m_painter.drawRoundedRect(badge, kRadius, kRadius);
    m_painter.setPen(Qt::white);
    m_texts.drawLine(m_painter, badge.adjusted(0, 0, 1, 0), CardFont::ImageBadge, text,
                     Qt::AlignHCenter);
}

void CardBodyPainter::paintLink(const CardFace& face) {
    const QRect text = textArea(face.area);
    int top = text.top();
    if (const QPixmap& picture = face.state.picture.thumbnail; !picture.isNull()) {
        const QRect place = Metrics::pictureArea(face.area, CardPreview::Link);
        drawSnapped(m_painter, centered(logicalSize(picture), place), picture);
        top = place.bottom() + 8;
    }
    const auto paragraph = [&](CardFont font, const QString& content, int lines,
                               const QColor& color) {
        const QSize area(text.width(), lines * 16 + 2);
        const TextBlock& block = m_texts.block({face.card.clip, font, content, area, nullptr});
        block.draw(m_painter, QPointF(text.left(), top), color);
        top += block.height();
    };
    const bool hasPicture = !face.state.picture.thumbnail.isNull();
    if (!face.card.title.isEmpty()) {
        paragraph(CardFont::Title, face.card.title, hasPicture ? 2 : 4, face.look.primaryText);
    }
    const int spare = (text.bottom() + 1 - top) / 16;
    paragraph(CardFont::Small, face.card.address, std::max(1, spare), face.look.secondaryText);
}

void CardBodyPainter::paintFile(const CardFace& face) {
    paintFilePicture(face);
    const QRect text = textArea(face.area);
    const QRect place = Metrics::pictureArea(face.area, CardPreview::File);
    const QString name = face.card.title.isEmpty() ? face.card.body : face.card.title;
    m_painter.setPen(face.look.primaryText);
    m_texts.drawLine(m_painter, QRect(text.left(), place.bottom() + 9, text.width(), 18),
                     CardFont::Name, name, Qt::AlignHCenter, Qt::ElideMiddle);
    m_painter.setPen(face.look.secondaryText);
    m_texts.drawLine(m_painter, QRect(text.left(), place.bottom() + 27, text.width(), 16),
                     CardFont::Small, face.card.detail, Qt::AlignHCenter);
}

void CardBodyPainter::paintFilePicture(const CardFace& face) {
    constexpr int kIconSide = 64;
    constexpr int kRadius = 6;
    const QRect place = Metrics::pictureArea(face.area, CardPreview::File);
    const CardPicture& picture = face.state.picture;
    if (picture.thumbnail.isNull()) {
        if (picture.fileIcon.isNull()) {
            paintSymbol(place, kIconSide, face.look.tile, face.card.symbol);
        } else {
            drawSnapped(m_painter, centered(logicalSize(picture.fileIcon), place),
                        picture.fileIcon);
        }
        return;
    }
    const QRectF frame = centered(logicalSize(picture.thumbnail), place);
    QPainterPath outline;
    outline.addRoundedRect(frame, kRadius, kRadius);
    m_painter.save();
    m_painter.setClipPath(outline, Qt::IntersectClip);
    drawSnapped(m_painter, frame, picture.thumbnail);
    m_painter.restore();
}

void CardBodyPainter::paintRichText(const CardFace& face) {
    const QRect area = textArea(face.area);
    const StyledText& text = *face.state.picture.richText;
    const TextBlock& block =
        m_texts.block({face.card.clip, CardFont::Body, text.text, area.size(), &text},
                      [&] { return cardFormats(text, face.look.primaryText, face.ground); });
    block.draw(m_painter, area.topLeft(), face.look.primaryText);
}

void CardBodyPainter::paintPlainText(const CardFace& face) {
    const QRect area = textArea(face.area);
    const TextBlock& block =
        m_texts.block({face.card.clip, CardFont::Body, face.card.body, area.size(), nullptr});
    block.draw(m_painter, area.topLeft(), face.look.primaryText);
}

void CardBodyPainter::paintSymbol(const QRect& place, int side, const QColor& color,
                                  const QString& name) {
    const qreal ratio = m_painter.device()->devicePixelRatio();
    drawSnapped(m_painter, centered(QSizeF(side, side), place),
                symbolPixmap(name, side, color, ratio));
}

}  // namespace quillo
