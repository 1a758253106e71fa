// SPDX-License-Identifier: MIT
#include "library/list/list_search_field.h"

#include <QEvent>
#include <QPainter>
#include <QScopedValueRollback>

namespace quillo {

ListSearchField::ListSearchField(QWidget* parent) : GlassField(0, parent) {
    setFixedHeight(kHeight);
    setPlaceholderText(QStringLiteral("Search..."));
    setAccessibleName(QStringLiteral("Search"));
    followPalette();
}

void ListSearchField::followPalette() {
    const QScopedValueRollback applying(m_isApplying, true);
    applyColors(paletteFor(schemeOf(palette())));
}

void ListSearchField::changeEvent(QEvent* event) {
    GlassField::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_isApplying) {
        followPalette();
    }
}

void ListSearchField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() && !text().isEmpty() ? QPen(colors().accent, 1)
                                                   : QPen(colors().panelBorder, 1));
    painter.setBrush(colors().field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    paintGlass(painter);
    painter.end();
    GlassField::paintEvent(event);
}

}  // namespace quillo
