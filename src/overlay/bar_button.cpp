// SPDX-License-Identifier: MIT
#include "overlay/bar_button.h"

#include <QPainter>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kSymbolSize = 14;
constexpr int kPadding = 8;
constexpr int kGap = 4;
constexpr double kRadius = 7;
constexpr double kDisabledOpacity = 0.45;

}  // namespace

BarButton::BarButton(const QString& symbol, QWidget* parent)
    : PanelButton(QAccessible::PushButton, parent), m_symbol(symbol) {
    setFont(sizedFont(font(), 12, QFont::Normal));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
}

void BarButton::setSymbol(const QString& symbol) {
    m_symbol = symbol;
    update();
}

void BarButton::setColors(const Palette& colors) {
    m_colors = colors;
    update();
}

void BarButton::setLabelShown(bool isShown) {
    m_isLabelShown = isShown;
    update();
}

int BarButton::wantedWidth(bool withLabel) const {
    const int label = withLabel ? kGap + fontMetrics().horizontalAdvance(text()) : 0;
    return 2 * kPadding + kSymbolSize + label;
}

QSize BarButton::sizeHint() const {
    return {wantedWidth(m_isLabelShown), kHeight};
}

void BarButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ground = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (isEnabled() && (underMouse() || isDown())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_colors.field);
        painter.drawRoundedRect(ground, kRadius, kRadius);
    }
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius, m_colors.accent);
    }
    painter.setOpacity(isEnabled() ? 1.0 : kDisabledOpacity);
    const QColor ink = underMouse() && isEnabled() ? m_colors.primaryText : m_colors.secondaryText;
    painter.drawPixmap(kPadding, (height() - kSymbolSize) / 2,
                       symbolPixmap(m_symbol, kSymbolSize, ink, devicePixelRatioF()));
    if (m_isLabelShown) {
        painter.setPen(ink);
        painter.drawText(rect().adjusted(kPadding + kSymbolSize + kGap, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, text());
    }
}

}  // namespace quillo
