// SPDX-License-Identifier: MIT
// Where a card's ink falls.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSet>

#include "library/thumbnails/card_painter.h"
#include "library/thumbnails/source_tile.h"
#include "library/thumbnails/text_block.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr QRect kCard(60, 30, 280, 240);

PanelLook darkLook() {
    return PanelLook(
        {.scheme = ColorScheme::Dark, .background = paletteFor(ColorScheme::Dark).panelBackground});
}

QImage painted(const CardContent& card, const CardState& state, qreal scale = 1,
               int imageBadge = 10) {
    QImage canvas((QSizeF(400, 300) * scale).toSize(), QImage::Format_RGB32);
    canvas.setDevicePixelRatio(scale);
    canvas.fill(Qt::magenta);
    QPainter painter(&canvas);
    CardPainter(darkLook(), QFont(), imageBadge).paint(painter, kCard, card, state);
    return canvas;
}

QRect inkBounds(const QImage& first, const QImage& second) {
    QRect bounds;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            if (first.pixel(x, y) != second.pixel(x, y)) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

QPixmap solid(QSize size, const QColor& color, qreal scale) {
    QPixmap pixmap(size * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(color);
    return pixmap;
}

// A picture made for another scale, or for a larger place, must not paint over its neighbours.
TEST(CardPainter, NoKindPaintsOutsideItsCard) {
    const QString wide = QString(5000, u'W');
    for (const CardPreview preview :
         {CardPreview::Text, CardPreview::Swatch, CardPreview::Link, CardPreview::Image,
          CardPreview::File, CardPreview::RichText}) {
        for (const qreal scale : {1.0, 1.25, 2.0}) {
            CardContent card;
            card.preview = preview;
            card.kindLabel = card.body = card.title = card.address = card.source = card.detail =
                card.sizeText = wide;
            card.swatch = QColor(Qt::red);
            card.isPinned = true;
            CardState state;
            state.age = wide;
            state.picture.thumbnail = solid({900, 700}, Qt::green, 1);
            state.picture.sourceIcon = solid({18, 18}, Qt::blue, 2);
            TextStyle huge;
            huge.bold = true;
            huge.pointSize = 900;
            state.picture.richText =
                std::make_shared<StyledText>(StyledText{wide, {{0, wide.size(), huge}}});
            const QImage canvas = painted(card, state, scale);
            const QRectF inside(QPointF(kCard.topLeft()) * scale, QSizeF(kCard.size()) * scale);
            for (int y = 0; y < canvas.height(); ++y) {
                for (int x = 0; x < canvas.width(); ++x) {
                    if (!inside.adjusted(-1, -1, 1, 1).contains(x, y)) {
                        ASSERT_EQ(canvas.pixelColor(x, y), QColor(Qt::magenta))
                            << int(preview) << " at " << x << "," << y << " scale " << scale;
                    }
                }
            }
        }
    }
}

// One device pixel of the picture is one of the screen, wherever the card stands.
TEST(CardPainter, APictureForTheScaleStaysSharp) {
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
        const QSize pixels = (QSizeF(280, 168) * scale).toSize();
        QImage stripes(pixels, QImage::Format_RGB32);
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                stripes.setPixelColor(x, y, x % 2 == 0 ? Qt::white : Qt::black);
            }
        }
        stripes.setDevicePixelRatio(scale);
        CardContent card;
        card.preview = CardPreview::Image;
        CardState state;
        state.picture.thumbnail = QPixmap::fromImage(stripes);
        const QImage canvas = painted(card, state, scale);
        const int y = int((kCard.top() + 100) * scale);
        const int left = int((kCard.left() + 20) * scale);
        for (int x = left; x < left + 40; ++x) {
            const int value = canvas.pixelColor(x, y).red();
            ASSERT_TRUE(value < 8 || value > 247) << "scale " << scale << " x " << x;
        }
    }
}

TEST(CardPainter, BadgesOfAnImageHaveTheSizeOfTheSetting) {
    const struct {
        std::optional<QString> setting;
        int px;
    } rows[] = {{u"small"_s, 8}, {u"medium"_s, 10}, {u"large"_s, 12},
                {u"huge"_s, 10}, {u"Small"_s, 10},  {std::nullopt, 10}};
    for (const auto& row : rows) {
        EXPECT_EQ(imageBadgePx(row.setting), row.px);
    }
    CardContent card;
    card.preview = CardPreview::Image;
    CardState state;
    state.picture.thumbnail = solid({280, 168}, Qt::white, 1);
    const QImage without = painted(card, state);
    card.sizeText = u"842 KB"_s;
    int before = 0;
    for (const int px : {8, 10, 12}) {
        const QRect badge = inkBounds(without, painted(card, state, 1, px));
        EXPECT_GT(badge.height(), before);
        EXPECT_EQ(badge.right(), kCard.right() - 10);
        before = badge.height();
    }
}

TEST(CardPainter, ButtonsAreHitWhereTheyAreDrawnAndOnlyWhenShown) {
    CardContent card;
    CardState plain;
    CardState both;
    both.showsDelete = both.showsGroup = true;
    const QRect ink = inkBounds(painted(card, plain), painted(card, both));
    const QRect areas = CardPainter::deleteButtonArea(kCard) | CardPainter::groupButtonArea(kCard);
    EXPECT_TRUE(areas.contains(ink));
    EXPECT_GT(ink.width(), 30);
    EXPECT_FALSE(
        CardPainter::deleteButtonArea(kCard).intersects(CardPainter::groupButtonArea(kCard)));
    const QPoint onDelete = CardPainter::deleteButtonArea(kCard).center();
    const QPoint onGroup = CardPainter::groupButtonArea(kCard).center();
    EXPECT_EQ(CardPainter::buttonAt(kCard, both, onDelete), CardButton::Delete);
    EXPECT_EQ(CardPainter::buttonAt(kCard, both, onGroup), CardButton::Group);
    EXPECT_EQ(CardPainter::buttonAt(kCard, both, kCard.center()), CardButton::None);
    EXPECT_EQ(CardPainter::buttonAt(kCard, plain, onDelete), CardButton::None);
}

// A text that is kept laid out must give way to another one of the same clip, and to another look.
TEST(CardPainter, KeptTextsFollowTheirClipAndTheLook) {
    CardPainter painter(darkLook(), QFont());
    CardContent card;
    card.clip = QUuid::createUuid();
    const auto paint = [&] {
        QImage canvas(400, 300, QImage::Format_RGB32);
        canvas.fill(Qt::magenta);
        QPainter device(&canvas);
        painter.paint(device, kCard, card, {});
        return canvas;
    };
    card.body = u"first"_s;
    const QImage first = paint();
    card.body = u"other"_s;
    EXPECT_NE(paint(), first);
    card.body = u"first"_s;
    EXPECT_EQ(paint(), first);
    painter.setLook(PanelLook({.scheme = ColorScheme::Light}));
    EXPECT_NE(paint(), first);
    painter.setLook(darkLook());
    EXPECT_EQ(paint(), first);
}

TEST(TextBlock, KeepsWithinItsHeight) {
    QFont font;
    font.setPixelSize(13);
    for (const QString& text : {QString(), QString(3000, u'\n'), QString(3000, u'W'),
                                QString(3000, u' '), QString(300, u'\t') + u"x\u2028y"_s}) {
        const TextBlock block({text, font, QSize(250, 100), {}});
        EXPECT_LE(block.height(), 100) << text.left(3).toStdString();
    }
    EXPECT_EQ(TextBlock({u"x"_s, font, QSize(250, 4), {}}).height(), 0);
}

TEST(SourceTile, HasALetterAndAReadableColourThatStays) {
    EXPECT_EQ(tileLetter(u"  (gedit"_s), u"G"_s);
    EXPECT_EQ(tileLetter(u"..."_s), QString());
    EXPECT_EQ(tileColor(u"org.gnome.gedit"_s), tileColor(u"org.gnome.gedit"_s));
    QSet<QRgb> seen;
    for (int i = 0; i < 200; ++i) {
        const QColor color = tileColor(u"org.example.program%1"_s.arg(i));
        EXPECT_GE(contrastRatio(Qt::white, color), kTextContrast) << color.name().toStdString();
        seen.insert(color.rgb());
    }
    EXPECT_GT(seen.size(), 5);
}

}  // namespace
}  // namespace quillo
