// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_painter.h"

#include <QHash>
#include <algorithm>

#include "appearance/symbols.h"
#include "library/thumbnails/card_body_painter.h"
#include "library/thumbnails/card_metrics.h"
#include "library/thumbnails/card_texts.h"
#include "library/thumbnails/source_tile.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using Metrics = CardMetrics;

constexpr int kBadgeSide = 18;
constexpr int kSourceIconSide = 18;
constexpr int kPinSide = 12;

QColor opaque(QColor color) {
    color.setAlpha(255);
    return color;
}

QRect headerArea(const QRect& card) {
    return {card.left() + Metrics::kMargin, card.top() - 1, card.width() - 2 * Metrics::kMargin,
            Metrics::kHeaderHeight};
}

QRect footerArea(const QRect& card) {
    return {card.left() + Metrics::kMargin, card.bottom() + 1 - Metrics::kFooterHeight + 1,
            card.width() - 2 * Metrics::kMargin, Metrics::kFooterHeight};
}

// "1920x1080 · 842 KB", "docs.example.org", ...
QString footerDetail(const CardFace& face) {
    const QSize size = face.state.picture.imageSize;
    QStringList parts;
    if (face.card.preview == CardPreview::Image && !size.isEmpty()) {
        parts.append(u"%1x%2"_s.arg(size.width()).arg(size.height()));
    }
    // A file's stands beneath its name.
    if (!face.card.detail.isEmpty() && face.card.preview != CardPreview::File) {
        parts.append(face.card.detail);
    }
    return parts.join(u" · "_s);
}

}  // namespace

class CardPainter::Private final {
public:
    Private(PanelLook panelLook, const QFont& font, int imageBadgePx)
        : look(std::move(panelLook)), texts(font, imageBadgePx) {}

    const CardLook& lookOf(const CardContent& card);
    [[nodiscard]] Ground groundOf(const CardLook& cardLook) const;
    void paintGround(QPainter& painter, const CardFace& face) const;
    void paintHeader(QPainter& painter, const CardFace& face);
    int paintHeaderEnd(QPainter& painter, const CardFace& face);
    void paintButton(QPainter& painter, const CardFace& face, CardButton button) const;
    void paintFooter(QPainter& painter, const CardFace& face);
    int paintSource(QPainter& painter, const CardFace& face, int end);
    void paintSourceIcon(QPainter& painter, const CardFace& face, const QRect& place);
    void paintBadge(QPainter& painter, const CardFace& face);
    void paintBorder(QPainter& painter, const CardFace& face) const;

    PanelLook look;
    QHash<int, CardLook> looks;  ///< By kind and filter.
    CardTexts texts;
};

CardPainter::CardPainter(const PanelLook& look, const QFont& font, int imageBadgePx)
    : d(std::make_unique<Private>(look, font, imageBadgePx)) {}

CardPainter::~CardPainter() = default;

void CardPainter::setLook(const PanelLook& look) {
    d->look = look;
    d->looks.clear();
    d->texts.forgetBlocks();
}

void CardPainter::setFont(const QFont& font) {
    d->texts.setFont(font);
}

void CardPainter::setImageBadgePx(int pixels) {
    d->texts.setImageBadgePx(pixels);
}

void CardPainter::forgetTexts() {
    d->texts.forget();
}

QRect CardPainter::bodyArea(const QRect& card) {
    return Metrics::bodyArea(card);
}

QRect CardPainter::deleteButtonArea(const QRect& card) {
    return {card.right() + 1 - 8 - Metrics::kButtonSide, card.top() + 5, Metrics::kButtonSide,
            Metrics::kButtonSide};
}

QRect CardPainter::groupButtonArea(const QRect& card) {
    return deleteButtonArea(card).translated(-Metrics::kButtonSide - 2, 0);
}

CardButton CardPainter::buttonAt(const QRect& card, const CardState& state, QPoint point) {
    if (state.showsDelete && deleteButtonArea(card).contains(point)) {
        return CardButton::Delete;
    }
    return state.showsGroup && groupButtonArea(card).contains(point) ? CardButton::Group
                                                                     : CardButton::None;
}

void CardPainter::paint(QPainter& painter, const QRect& area, const CardContent& card,
                        const CardState& state) const {
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const CardLook& cardLook = d->lookOf(card);
    const CardFace face{area, card, state, cardLook, d->groundOf(cardLook)};
    d->paintGround(painter, face);
    CardBodyPainter(painter, d->texts).paint(face);
    d->paintHeader(painter, face);
    d->paintFooter(painter, face);
    d->paintBorder(painter, face);
    painter.restore();
}

const CardLook& CardPainter::Private::lookOf(const CardContent& card) {
    const int key = int(card.kind) << 8 | int(card.filter);
    auto found = looks.find(key);
    if (found == looks.end()) {
        found = looks.insert(key, look.card(card.kind, card.filter));
    }
    return *found;
}

Ground CardPainter::Private::groundOf(const CardLook& cardLook) const {
    const QColor& panel = look.palette().panelBackground;
    return layered({opaque(panel), panel.alphaF()}, opaque(cardLook.ground),
                   cardLook.ground.alphaF());
}

void CardPainter::Private::paintGround(QPainter& painter, const CardFace& face) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(face.look.ground);
    painter.drawRoundedRect(face.area, Metrics::kCornerRadius, Metrics::kCornerRadius);
}

void CardPainter::Private::paintHeader(QPainter& painter, const CardFace& face) {
    constexpr int kSymbolSide = 12;
    const QRect header = headerArea(face.area);
    const QRect tile = squareIn(header, header.left(), Metrics::kTileSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(face.look.tile);
    painter.drawRoundedRect(tile, 4.5, 4.5);
    drawSnapped(painter, QRectF(tile).adjusted(3, 3, -3, -3),
                symbolPixmap(face.card.symbol, kSymbolSide, face.look.tileSymbol,
                             painter.device()->devicePixelRatio()));
    const int end = paintHeaderEnd(painter, face);
    painter.setPen(face.look.primaryText);
    const int left = tile.right() + 1 + 7;
    texts.drawLine(painter, QRect(left, header.top(), end - 8 - left, header.height()),
                   CardFont::Label, face.card.kindLabel);
}

// Buttons, or age and pin; gives where they begin.
int CardPainter::Private::paintHeaderEnd(QPainter& painter, const CardFace& face) {
    if (face.state.showsDelete || face.state.showsGroup) {
        int begin = headerArea(face.area).right();
        if (face.state.showsDelete) {
            paintButton(painter, face, CardButton::Delete);
            begin = deleteButtonArea(face.area).left();
        }
        if (face.state.showsGroup) {
            paintButton(painter, face, CardButton::Group);
            begin = groupButtonArea(face.area).left();
        }
        return begin;
    }
    QRect age = headerArea(face.area);
    if (face.card.isPinned) {
        const QRect pin = squareIn(age, age.right() + 1 - kPinSide, kPinSide);
        drawSnapped(painter, pin,
                    symbolPixmap(u"pin.fill"_s, kPinSide, face.look.secondaryText,
                                 painter.device()->devicePixelRatio()));
        age.setRight(pin.left() - 8);
    }
    painter.setPen(face.look.secondaryText);
    return age.right() + 1 -
           texts.drawLine(painter, age, CardFont::Age, face.state.age, Qt::AlignRight);
}

void CardPainter::Private::paintButton(QPainter& painter, const CardFace& face,
                                       CardButton button) const {
    constexpr int kSymbolSide = 16;
    const bool isDelete = button == CardButton::Delete;
    const QRect area = isDelete ? deleteButtonArea(face.area) : groupButtonArea(face.area);
    const bool isHovered = face.state.hoveredButton == button;
    if (isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(face.look.badge);
        painter.drawRoundedRect(area, 6, 6);
    }
    drawSnapped(painter, QRectF(area).adjusted(4, 4, -4, -4),
                symbolPixmap(isDelete ? u"trash"_s : u"folder.badge.plus"_s, kSymbolSide,
                             isHovered ? face.look.primaryText : face.look.secondaryText,
                             painter.device()->devicePixelRatio()));
}

void CardPainter::Private::paintFooter(QPainter& painter, const CardFace& face) {
    constexpr int kGap = 12;
    const QRect footer = footerArea(face.area);
    const int end = footer.right() + 1 - (face.state.index >= 0 ? kBadgeSide + 8 : 0);
    QString detail = footerDetail(face);
    int left = footer.left();
    if (!face.card.source.isEmpty()) {
        detail = detail.isEmpty() ? QString() : u"· "_s + detail;
        // A long name leaves at least half of the footer to the detail.
        const int spare = end - kGap - texts.width(CardFont::Small, detail);
        left = paintSource(painter, face, std::max(spare, footer.left() + footer.width() / 2));
        left += kGap;
    }
    painter.setPen(face.look.secondaryText);
    texts.drawLine(painter, QRect(left, footer.top(), end - left, footer.height()), CardFont::Small,
                   detail);
    paintBadge(painter, face);
}

// Gives where the source ends.
int CardPainter::Private::paintSource(QPainter& painter, const CardFace& face, int end) {
    const QRect footer = footerArea(face.area);
    const QRect icon = squareIn(footer, footer.left(), kSourceIconSide);
    paintSourceIcon(painter, face, icon);
    const int left = icon.right() + 1 + 6;
    painter.setPen(face.look.secondaryText);
    return left + texts.drawLine(painter, QRect(left, footer.top(), end - left, footer.height()),
                                 CardFont::Small, face.card.source);
}

void CardPainter::Private::paintSourceIcon(QPainter& painter, const CardFace& face,
                                           const QRect& place) {
    if (!face.state.picture.sourceIcon.isNull()) {
        drawSnapped(painter, place, face.state.picture.sourceIcon);
        return;
    }
    paintSourceTile(painter, texts, place, face.card);
}

void CardPainter::Private::paintBadge(QPainter& painter, const CardFace& face) {
    if (face.state.index < 0) {
        return;
    }
    const QRect footer = footerArea(face.area);
    const QRect badge = squareIn(footer, footer.right() + 1 - kBadgeSide, kBadgeSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(face.look.badge);
    painter.drawRoundedRect(badge, 5, 5);
    painter.setPen(face.look.badgeText);
    texts.drawLine(painter, badge, CardFont::Digit, QString::number(face.state.index + 1),
                   Qt::AlignHCenter);
}

void CardPainter::Private::paintBorder(QPainter& painter, const CardFace& face) const {
    qreal width = 1;
    QColor color = face.look.border;
    if (face.state.isDropTarget) {
        width = 2;
        color = look.palette().accent;
    } else if (face.state.isHovered) {
        color = face.look.secondaryText;
        color.setAlphaF(0.45F);
    }
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    const qreal inset = width / 2;
    const qreal radius = Metrics::kCornerRadius - inset;
    painter.drawRoundedRect(QRectF(face.area).adjusted(inset, inset, -inset, -inset), radius,
                            radius);
}

int imageBadgePx(const std::optional<QString>& setting) {
    return setting == u"small"_s ? 8 : setting == u"large"_s ? 12 : 10;
}

}  // namespace quillo
