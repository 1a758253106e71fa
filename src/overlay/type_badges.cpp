// SPDX-License-Identifier: MIT
#include "overlay/type_badges.h"

#include <QLocale>
#include <QPainter>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/list/clip_list_model.h"

namespace quillo {
namespace {

constexpr int kTileSide = 16;
constexpr int kSymbolSize = 10;
constexpr int kGapInside = 4;
constexpr int kGapBetween = 7;

// Large numbers would push everything else out of the bar.
QString countText(qsizetype count) {
    return count < 10'000 ? QLocale().toString(count)
                          : QStringLiteral("%1k").arg(QLocale().toString(count / 1000));
}

}  // namespace

TypeBadges::TypeBadges(QWidget* parent) : QWidget(parent) {
    setFont(sizedFont(font(), 12, QFont::Normal));
}

bool TypeBadges::setCounts(const QList<ClipTypeCount>& counts) {
    if (m_counts == counts) {
        return false;
    }
    m_counts = counts;
    QStringList spoken;
    for (const ClipTypeCount& entry : counts) {
        spoken.append(QStringLiteral("%1 %2").arg(entry.count).arg(kindName(entry.type)));
    }
    setAccessibleName(spoken.join(QStringLiteral(", ")));
    setToolTip(accessibleName());
    update();
    return true;
}

void TypeBadges::setColors(const QColor& text, KindColor kindColor) {
    m_text = text;
    m_kindColor = std::move(kindColor);
    update();
}

int TypeBadges::wantedWidth() const {
    int width = 0;
    for (const ClipTypeCount& entry : m_counts) {
        width += kTileSide + kGapInside + fontMetrics().horizontalAdvance(countText(entry.count)) +
                 kGapBetween;
    }
    return width;
}

void TypeBadges::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    int x = 0;
    for (const ClipTypeCount& entry : std::as_const(m_counts)) {
        const QRect tile(x, (height() - kTileSide) / 2, kTileSide, kTileSide);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_kindColor ? m_kindColor(entry.type) : defaultColor(entry.type));
        painter.drawRoundedRect(tile, 4, 4);
        painter.drawPixmap(
            tile.topLeft() + QPoint(3, 3),
            symbolPixmap(kindSymbol(entry.type), kSymbolSize, Qt::white, devicePixelRatioF()));
        const QString count = countText(entry.count);
        x += kTileSide + kGapInside;
        painter.setPen(m_text);
        const int advance = fontMetrics().horizontalAdvance(count);
        painter.drawText(QRect(x, 0, advance + 2, height()), Qt::AlignLeft | Qt::AlignVCenter,
                         count);
        x += advance + kGapBetween;
    }
}

}  // namespace quillo
