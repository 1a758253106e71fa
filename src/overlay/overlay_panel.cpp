// SPDX-License-Identifier: MIT
#include "overlay/overlay_panel.h"

#include <QBitmap>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "overlay/panel_geometry.h"

namespace quillo {
namespace {

QRegion roundedShape(const QSize& size) {
    QBitmap mask(size);
    mask.clear();
    QPainter painter(&mask);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRect(QPoint(0, 0), size), kPanelCornerRadius, kPanelCornerRadius);
    painter.end();
    return mask;
}

}  // namespace

OverlayPanel::OverlayPanel(Corners corners)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_corners(corners) {
    setAttribute(Qt::WA_TranslucentBackground, corners == Corners::Blended);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setWindowTitle(QStringLiteral("Quillo"));
    setAccessibleName(QStringLiteral("Clipboard history"));
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
}

void OverlayPanel::setContent(QWidget* content) {
    layout()->addWidget(content);
}

void OverlayPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_shape = roundedShape(size());
    if (m_corners == Corners::Cut) {
        setMask(m_shape);
    }
}

void OverlayPanel::mousePressEvent(QMouseEvent* event) {
    m_isDragging = m_isMovable && event->button() == Qt::LeftButton;
    m_grip = event->globalPosition().toPoint() - pos();
}

void OverlayPanel::mouseMoveEvent(QMouseEvent* event) {
    if (m_isDragging) {
        move(event->globalPosition().toPoint() - m_grip);
        Q_EMIT dragged();
    }
}

void OverlayPanel::mouseReleaseEvent(QMouseEvent* /*event*/) {
    m_isDragging = false;
}

}  // namespace quillo
