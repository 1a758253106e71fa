// SPDX-License-Identifier: MIT
#include "overlay/search_field.h"

#include <QPainter>

namespace quillo {

SearchField::SearchField(QWidget* parent) : GlassField(kRing, parent) {
    setPlaceholderText(QStringLiteral("Search clips..."));
    setAccessibleName(QStringLiteral("Search clips"));
    setToolTip(QStringLiteral("Search text, addresses, file names and programs (Ctrl+F)"));
}

void SearchField::typeText(const QString& text) {
    setFocus(Qt::ShortcutFocusReason);
    end(false);
    insert(text);
}

void SearchField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors().field);
    painter.drawRoundedRect(rect().adjusted(kRing, kRing, -kRing, -kRing), kRadius, kRadius);
    if (hasFocus()) {
        painter.setPen(QPen(colors().accent, kRing));
        painter.setBrush(Qt::NoBrush);
        constexpr qreal kInset = kRing / 2.0;
        painter.drawRoundedRect(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset),
                                kRadius + kInset, kRadius + kInset);
    }
    paintGlass(painter);
    painter.end();
    GlassField::paintEvent(event);
}

}  // namespace quillo
