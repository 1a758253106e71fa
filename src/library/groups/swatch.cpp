// SPDX-License-Identifier: MIT
#include "library/groups/swatch.h"

#include <QPainter>

namespace quillo {

Swatch::Swatch(const QColor& color, const QString& name, int disc, QWidget* parent)
    : PanelButton(QAccessible::RadioButton, parent), m_color(color) {
    setCheckable(true);
    setAccessibleName(name);
    setToolTip(name);
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(disc + 2 * kRing, disc + 2 * kRing);
}

void Swatch::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

void Swatch::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc = QRectF(rect()).adjusted(kRing, kRing, -kRing, -kRing);
    painter.setPen(Qt::NoPen);
    if (isChecked()) {
        // On a light ground a white ring is seen by the line around it.
        painter.setPen(QPen(m_look.secondaryText, 1));
        painter.setBrush(Qt::white);
        painter.drawEllipse(disc.adjusted(-2, -2, 2, 2));
        painter.setPen(Qt::NoPen);
    }
    painter.setBrush(m_color);
    painter.drawEllipse(disc);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(m_look.primaryText, 1.5, Qt::DotLine));
        painter.drawEllipse(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75));
    }
}

}  // namespace quillo
