// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_painter.h"

#include <QFontDatabase>
#include <QTextLayout>

#include "appearance/fonts.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kCornerRadius = 12;
constexpr int kMargin = 12;
constexpr int kHeaderHeight = 36;
constexpr int kFooterHeight = 36;
constexpr int kTileSide = 18;
constexpr int kBadgeSide = 18;

// The part of a picture that fills an area without distortion, in the picture's own pixels.
QRectF coveringSource(const QSizeF& picture, const QSizeF& area) {
    const QSizeF part = area.scaled(picture, Qt::KeepAspectRatio);
    return QRectF((picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2,
                  part.width(), part.height());
}

// Lines that fit, the last of them elided.
QStringList fittingLines(const QString& text, const QFont& font, const QSize& area) {
    const QFontMetrics metrics(font);
    const int most = area.height() / metrics.lineSpacing();
    QStringList lines;
    for (const QStringView paragraph : QStringTokenizer{text, u'\n'}) {
        const QString content = paragraph.toString().replace(u'\t', QStringLiteral("    "));
        QTextLayout layout(content, font);
        layout.beginLayout();
        while (true) {
            QTextLine line = layout.createLine();
            if (!line.isValid()) {
                break;
            }
            line.setLineWidth(area.width());
            if (lines.size() + 1 >= most) {
                lines.append(metrics.elidedText(content.sliced(line.textStart()), Qt::ElideRight,
                                                area.width()));
                return lines;
            }
            lines.append(content.sliced(line.textStart(), line.textLength()));
        }
        layout.endLayout();
        if (content.isEmpty() && lines.size() + 1 < most) {
            lines.append(QString());
        }
    }
    return lines;
}

}  // namespace

CardPainter::CardPainter(const PanelLook& look, const QFont& font)
    : m_look(look),
      m_bodyFont(sizedFont(font, 13, QFont::Normal)),
      m_labelFont(sizedFont(font, 12, QFont::DemiBold)),
      m_smallFont(sizedFont(font, 11, QFont::Normal)) {}

QRect CardPainter::bodyArea(const QRect& card) {
    return card.adjusted(0, kHeaderHeight, 0, -kFooterHeight);
}

void CardPainter::paint(QPainter& painter, const QRect& area, const CardContent& card,
                        const CardState& state) const {
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const CardFace face{card, state, m_look.card(card.kind, card.filter)};
    paintGround(painter, area, face.look.ground);
    paintBody(painter, area, face);
    paintHeader(painter, area, face);
    paintFooter(painter, area, face);
    painter.setPen(QPen(face.look.border, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius,
                            kCornerRadius);
    painter.restore();
}

void CardPainter::paintGround(QPainter& painter, const QRect& area, const QColor& ground) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(area, kCornerRadius, kCornerRadius);
}

void CardPainter::paintHeader(QPainter& painter, const QRect& area, const CardFace& face) const {
    const auto& [card, state, look] = face;
    const QRect header(area.left() + kMargin, area.top(), area.width() - 2 * kMargin,
                       kHeaderHeight);
    const QRect tile(header.left(), header.top() + 8, kTileSide, kTileSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.tile);
    painter.drawRoundedRect(tile, 4, 4);
    painter.drawPixmap(
        tile.topLeft() + QPoint(3, 3),
        symbolPixmap(card.symbol, 12, look.tileSymbol, painter.device()->devicePixelRatio()));
    painter.setFont(m_smallFont);
    painter.setPen(look.secondaryText);
    const QRect line = header.adjusted(kTileSide + 7, -1, 0, -1);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, state.age);
    const int ageWidth = QFontMetrics(m_smallFont).horizontalAdvance(state.age);
    painter.setFont(m_labelFont);
    painter.setPen(look.primaryText);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(m_labelFont)
                         .elidedText(card.kindLabel, Qt::ElideRight, line.width() - ageWidth - 8));
}

void CardPainter::paintBody(QPainter& painter, const QRect& area, const CardFace& face) const {
    const auto& [card, state, look] = face;
    const QRect body = bodyArea(area);
    if (card.swatch) {
        paintSwatch(painter, body, face);
    } else if (card.hasImage && !state.thumbnail.isNull()) {
        paintImage(painter, body, state);
    } else if (card.hasImage) {
        const QPixmap symbol =
            symbolPixmap(card.symbol, 40, look.secondaryText, painter.device()->devicePixelRatio());
        painter.drawPixmap(body.center() - QPoint(20, 20), symbol);
    } else {
        paintText(painter, body.adjusted(14, 0, -14, -4), face);
    }
}

void CardPainter::paintSwatch(QPainter& painter, const QRect& body, const CardFace& face) const {
    const auto& [card, state, look] = face;
    const QRect swatch = body.adjusted(kMargin, 0, -kMargin, -44);
    painter.setPen(QPen(look.border, 1));
    painter.setBrush(*card.swatch);
    painter.drawRoundedRect(swatch, 10, 10);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPixelSize(13);
    painter.setFont(fixed);
    painter.setPen(look.primaryText);
    painter.drawText(QRect(body.left() + 14, swatch.bottom() + 8, body.width() - 28, 24),
                     Qt::AlignLeft | Qt::AlignVCenter, card.body.trimmed());
}

void CardPainter::paintImage(QPainter& painter, const QRect& body, const CardState& state) const {
    const QSizeF picture = state.thumbnail.size();
    const QRectF source = coveringSource(picture, body.size());
    painter.drawPixmap(QRectF(body), state.thumbnail, source);
}

void CardPainter::paintText(QPainter& painter, const QRect& body, const CardFace& face) const {
    painter.setFont(m_bodyFont);
    painter.setPen(face.look.primaryText);
    const QFontMetrics metrics(m_bodyFont);
    int baseline = body.top() + metrics.ascent() + 1;
    for (const QString& line : fittingLines(face.card.body, m_bodyFont, body.size())) {
        painter.drawText(body.left(), baseline, line);
        baseline += metrics.lineSpacing();
    }
}

void CardPainter::paintFooter(QPainter& painter, const QRect& area, const CardFace& face) const {
    const auto& [card, state, look] = face;
    const QRect footer(area.left() + kMargin, area.bottom() + 1 - kFooterHeight,
                       area.width() - 2 * kMargin, kFooterHeight);
    const QRect line = footer.adjusted(0, 4, -kBadgeSide - 8, 0);
    QString text = card.source;
    for (const QString& part :
         {state.imageSize.isEmpty()
              ? QString()
              : QStringLiteral("%1x%2").arg(state.imageSize.width()).arg(state.imageSize.height()),
          card.detail}) {
        if (!part.isEmpty()) {
            text += text.isEmpty() ? part : QStringLiteral("  · ") + part;
        }
    }
    painter.setFont(m_smallFont);
    painter.setPen(look.secondaryText);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(m_smallFont).elidedText(text, Qt::ElideMiddle, line.width()));
    paintBadge(painter, footer, face);
}

void CardPainter::paintBadge(QPainter& painter, const QRect& footer, const CardFace& face) const {
    if (face.state.index < 0) {
        return;
    }
    const QRect badge(footer.right() + 1 - kBadgeSide, footer.top() + 11, kBadgeSide, kBadgeSide);
    painter.setFont(m_smallFont);
    painter.setPen(Qt::NoPen);
    painter.setBrush(face.look.badge);
    painter.drawRoundedRect(badge, 5, 5);
    painter.setPen(face.look.badgeText);
    painter.drawText(badge, Qt::AlignCenter, QString::number(face.state.index + 1));
}

}  // namespace quillo
