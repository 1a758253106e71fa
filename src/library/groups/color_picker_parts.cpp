// SPDX-License-Identifier: MIT
#include "library/groups/color_picker_parts.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr qreal kRadius = 5;
constexpr int kInset = 3;
constexpr int kStripWidth = 20;

QRectF fieldOf(const QWidget& widget) {
    return QRectF(widget.rect()).adjusted(kInset, kInset, -kInset, -kInset);
}

double shareOf(qreal position, qreal start, qreal length) {
    return length > 0 ? std::clamp((position - start) / length, 0.0, 1.0) : 0.0;
}

double stepOf(const QKeyEvent& event) {
    return (event.modifiers() & Qt::ShiftModifier) != 0 ? 0.1 : 0.01;
}

// Dark outside and white inside, so that it is seen on every colour; whole at the edges too.
void paintHandle(QPainter& painter, const QWidget& widget, const QPointF& place,
                 const QColor& color) {
    constexpr qreal kReach = 6.5;
    const QPointF center(std::clamp(place.x(), kReach, widget.width() - kReach),
                         std::clamp(place.y(), kReach, widget.height() - kReach));
    painter.setPen(QPen(QColor(0, 0, 0, 130), 1));
    painter.setBrush(Qt::white);
    painter.drawEllipse(center, 6, 6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(center, 4, 4);
}

}  // namespace

ShadeSquare::ShadeSquare(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Saturation and brightness"));
    setAccessibleDescription(QStringLiteral("The arrow keys change them"));
}

void ShadeSquare::setShade(double saturation, double value) {
    m_saturation = std::clamp(saturation, 0.0, 1.0);
    m_value = std::clamp(value, 0.0, 1.0);
    update();
}

void ShadeSquare::setHue(double hue) {
    m_hue = hue;
    update();
}

void ShadeSquare::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

void ShadeSquare::moveTo(double saturation, double value) {
    setShade(saturation, value);
    Q_EMIT moved();
}

void ShadeSquare::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = fieldOf(*this);
    QLinearGradient saturation(area.topLeft(), area.topRight());
    saturation.setColorAt(0, Qt::white);
    saturation.setColorAt(1, QColor::fromHsvF(float(m_hue), 1, 1));
    fillRounded(painter, area, kRadius, saturation);
    QLinearGradient value(area.topLeft(), area.bottomLeft());
    value.setColorAt(0, Qt::transparent);
    value.setColorAt(1, Qt::black);
    fillRounded(painter, area, kRadius, value);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius + 2, m_look.ring);
    }
    paintHandle(
        painter, *this,
        {area.left() + m_saturation * area.width(), area.bottom() - m_value * area.height()},
        QColor::fromHsvF(float(m_hue), float(m_saturation), float(m_value)));
}

void ShadeSquare::mousePressEvent(QMouseEvent* event) {
    mouseMoveEvent(event);
}

void ShadeSquare::mouseMoveEvent(QMouseEvent* event) {
    const QRectF area = fieldOf(*this);
    moveTo(shareOf(event->position().x(), area.left(), area.width()),
           1 - shareOf(event->position().y(), area.top(), area.height()));
}

void ShadeSquare::keyPressEvent(QKeyEvent* event) {
    const double step = stepOf(*event);
    switch (event->key()) {
        case Qt::Key_Left:
            return moveTo(m_saturation - step, m_value);
        case Qt::Key_Right:
            return moveTo(m_saturation + step, m_value);
        case Qt::Key_Up:
            return moveTo(m_saturation, m_value + step);
        case Qt::Key_Down:
            return moveTo(m_saturation, m_value - step);
        default:
            QWidget::keyPressEvent(event);
    }
}

HueStrip::HueStrip(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setFixedWidth(kStripWidth);
    setAccessibleName(QStringLiteral("Hue"));
    setAccessibleDescription(QStringLiteral("The arrow keys change it"));
}

void HueStrip::setHue(double hue) {
    m_hue = std::clamp(hue, 0.0, 1.0);
    update();
}

void HueStrip::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

void HueStrip::moveTo(double hue) {
    setHue(hue);
    Q_EMIT moved();
}

void HueStrip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = fieldOf(*this);
    QLinearGradient hues(area.topLeft(), area.bottomLeft());
    constexpr int kStops = 6;
    for (int i = 0; i <= kStops; ++i) {
        hues.setColorAt(double(i) / kStops, QColor::fromHsvF(float(i % kStops) / kStops, 1, 1));
    }
    fillRounded(painter, area, kRadius, hues);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius + 2, m_look.ring);
    }
    paintHandle(painter, *this, {area.center().x(), area.top() + m_hue * area.height()},
                QColor::fromHsvF(float(m_hue), 1, 1));
}

void HueStrip::mousePressEvent(QMouseEvent* event) {
    mouseMoveEvent(event);
}

void HueStrip::mouseMoveEvent(QMouseEvent* event) {
    const QRectF area = fieldOf(*this);
    moveTo(shareOf(event->position().y(), area.top(), area.height()));
}

void HueStrip::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Left:
            return moveTo(m_hue - stepOf(*event));
        case Qt::Key_Down:
        case Qt::Key_Right:
            return moveTo(m_hue + stepOf(*event));
        default:
            QWidget::keyPressEvent(event);
    }
}

}  // namespace quillo
