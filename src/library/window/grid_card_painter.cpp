// SPDX-License-Identifier: MIT
#include "library/window/grid_card_painter.h"

#include <QPainterPath>
#include <algorithm>

#include "appearance/symbols.h"
#include "library/list/clip_list_model.h"
#include "library/thumbnails/card_body_painter.h"
#include "library/thumbnails/card_metrics.h"
#include "library/thumbnails/source_tile.h"
#include "library/window/clip_grid_layout.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qreal kRadius = 10;
constexpr int kMargin = 11;
constexpr int kBadgeSide = 18;
constexpr int kBadgeInset = 8;
constexpr int kSourceSide = 16;
constexpr int kPinSide = 11;
constexpr int kNameHeight = 18;
constexpr int kFallbackSide = 34;

QPainterPath rounded(const QRect& area) {
    QPainterPath path;
    path.addRoundedRect(area, kRadius, kRadius);
    return path;
}

}  // namespace

struct GridCardPainter::Face {
    QPainter& painter;
    QRect area;
    const CardContent& card;
    const GridCardState& state;

    [[nodiscard]] QRect body() const { return area.adjusted(0, 0, 0, -kFooterHeight); }
    [[nodiscard]] QRect footer() const {
        return {area.left() + kMargin - 1, area.bottom() + 1 - kFooterHeight,
                area.width() - 2 * (kMargin - 1), kFooterHeight};
    }
    [[nodiscard]] qreal ratio() const { return painter.device()->devicePixelRatio(); }
};

GridCardPainter::GridCardPainter(const QFont& font)
    : m_look(libraryLook(ColorScheme::Light)), m_texts(font, kPinSide) {}

void GridCardPainter::setLook(const LibraryLook& look) {
    m_look = look;
    m_texts.forgetBlocks();
}

CardContent GridCardPainter::asked(CardContent card) {
    const bool hasPicture = card.preview == CardPreview::Image || card.preview == CardPreview::File;
    // The stored text of a page lacks the line breaks that the page has.
    const bool isPage = card.preview == CardPreview::RichText && card.kind == ClipType::Html;
    if (!hasPicture && !isPage) {
        card.preview = CardPreview::Text;
    }
    return card;
}

QSize GridCardPainter::askedSize() {
    const int body = ClipGridLayout::kCardHeight - kFooterHeight;
    return {ClipGridLayout::kMostCardWidth,
            body + CardMetrics::kHeaderHeight + CardMetrics::kFooterHeight};
}

void GridCardPainter::paintBlank(QPainter& painter, const QRect& area) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_look.cardBorder, 1));
    painter.setBrush(m_look.card);
    painter.drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

void GridCardPainter::paint(QPainter& painter, const QRect& area, const CardContent& card,
                            const GridCardState& state) {
    const Face face{painter, area, card, state};
    paintBlank(painter, area);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setClipPath(rounded(area), Qt::IntersectClip);
    paintBody(face);
    paintBadge(face);
    painter.fillRect(QRect(area.left(), face.footer().top(), area.width(), 1), m_look.cardBorder);
    paintFooter(face);
    painter.restore();
    paintOutline(face);
}

void GridCardPainter::paintBody(const Face& face) {
    switch (face.card.kind) {
        case ClipType::Image:
            return paintImage(face);
        case ClipType::FileUrl:
            return paintFile(face);
        default:
            return paintText(face);
    }
}

void GridCardPainter::paintImage(const Face& face) {
    const QPixmap& picture = face.state.picture.thumbnail;
    const QRect body = face.body();
    if (!picture.isNull()) {
        drawSnapped(face.painter, centered(logicalSize(picture), body), picture);
        return;
    }
    const QRect symbol = body.adjusted(0, 0, 0, -kNameHeight);
    drawSnapped(face.painter, centered(QSizeF(kFallbackSide, kFallbackSide), symbol),
                symbolPixmap(u"photo"_s, kFallbackSide, m_look.secondaryText, face.ratio()));
    face.painter.setPen(m_look.secondaryText);
    m_texts.drawLine(face.painter, QRect(body.left(), body.bottom() - 36, body.width(), 18),
                     CardFont::Name, u"Image"_s, Qt::AlignHCenter);
}

void GridCardPainter::paintFile(const Face& face) {
    const QRect body = face.body();
    const QRect name(body.left() + kMargin, body.bottom() - 35, body.width() - 2 * kMargin,
                     kNameHeight);
    paintFilePicture(
        face, QRect(body.left(), body.top() + 10, body.width(), name.top() - body.top() - 16));
    face.painter.setPen(m_look.primaryText);
    m_texts.drawLine(face.painter, name, CardFont::Age,
                     face.card.title.isEmpty() ? u"File"_s : face.card.title, Qt::AlignHCenter,
                     Qt::ElideMiddle);
}

void GridCardPainter::paintFilePicture(const Face& face, const QRect& place) const {
    const CardPicture& picture = face.state.picture;
    const QPixmap& shown = picture.thumbnail.isNull() ? picture.fileIcon : picture.thumbnail;
    if (shown.isNull()) {
        drawSnapped(
            face.painter, centered(QSizeF(kFallbackSide, kFallbackSide), place),
            symbolPixmap(face.card.symbol, kFallbackSide, m_look.secondaryText, face.ratio()));
        return;
    }
    const QSizeF whole = logicalSize(shown);
    const qreal factor =
        std::min({1.0, place.width() / whole.width(), place.height() / whole.height()});
    face.painter.drawPixmap(centered(whole * factor, place), shown,
                            QRectF(QPointF(), QSizeF(shown.size())));
}

void GridCardPainter::paintText(const Face& face) {
    // Beside the badge, which stands in the corner, no text.
    const QRect text = face.body().adjusted(kMargin, 9, -kMargin - kBadgeSide - 4, -4);
    const auto& page = face.state.picture.richText;
    const TextBlock& block = m_texts.block(
        {face.card.clip, CardFont::Age, page ? page->text : face.card.body, text.size(), nullptr});
    block.draw(face.painter, text.topLeft(), m_look.primaryText);
}

void GridCardPainter::paintBadge(const Face& face) const {
    constexpr int kSymbol = 12;
    const QRectF badge(face.area.right() + 1 - kBadgeInset - kBadgeSide,
                       face.area.top() + kBadgeInset, kBadgeSide, kBadgeSide);
    face.painter.setPen(Qt::NoPen);
    face.painter.setBrush(QColor(0, 0, 0, 128));
    face.painter.drawRoundedRect(badge, 4, 4);
    drawSnapped(face.painter, badge.adjusted(3, 3, -3, -3),
                symbolPixmap(kindSymbol(face.card.kind), kSymbol, Qt::white, face.ratio()));
}

void GridCardPainter::paintFooter(const Face& face) {
    const QRect footer = face.footer();
    int end = footer.right() + 1;
    if (face.card.isPinned) {
        const QRect pin = squareIn(footer, end - kPinSide, kPinSide);
        drawSnapped(face.painter, pin,
                    symbolPixmap(u"pin.fill"_s, kPinSide, m_look.secondaryText, face.ratio()));
        end = pin.left() - 6;
    }
    face.painter.setPen(m_look.secondaryText);
    const int age = m_texts.width(CardFont::Small, face.state.age);
    m_texts.drawLine(face.painter, QRect(end - age, footer.top(), age + 2, footer.height()),
                     CardFont::Small, face.state.age);
    if (!face.card.source.isEmpty()) {
        paintSource(face, footer.adjusted(0, 0, end - age - 8 - footer.right(), 0));
    }
}

void GridCardPainter::paintSource(const Face& face, const QRect& place) {
    const QRect icon = squareIn(place, place.left(), kSourceSide);
    const QPixmap& picture = face.state.picture.sourceIcon;
    if (picture.isNull()) {
        paintSourceTile(face.painter, m_texts, icon, face.card);
    } else {
        face.painter.drawPixmap(QRectF(icon), picture, QRectF(QPointF(), QSizeF(picture.size())));
    }
    face.painter.setPen(m_look.secondaryText);
    const int left = icon.right() + 1 + 6;
    m_texts.drawLine(face.painter,
                     QRect(left, place.top(), place.right() + 1 - left, place.height()),
                     CardFont::Small, face.card.source);
}

void GridCardPainter::paintOutline(const Face& face) const {
    QPainter& painter = face.painter;
    painter.setBrush(Qt::NoBrush);
    if (face.state.isSelected) {
        painter.setPen(QPen(m_look.accent, 2.5));
        painter.drawRoundedRect(QRectF(face.area).adjusted(-1, -1, 1, 1), kRadius + 1, kRadius + 1);
    } else if (face.state.isHovered) {
        painter.setPen(QPen(mixed(m_look.cardBorder, m_look.primaryText, 0.35), 1));
        painter.drawRoundedRect(QRectF(face.area).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    }
    if (face.state.isCurrent && !face.state.isSelected) {
        painter.setPen(QPen(m_look.accent, 1.5, Qt::DotLine));
        painter.drawRoundedRect(QRectF(face.area).adjusted(-1, -1, 1, 1), kRadius + 1, kRadius + 1);
    }
}

}  // namespace quillo
