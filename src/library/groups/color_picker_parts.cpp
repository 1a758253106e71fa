// SPDX-License-Identifier: MIT
#include "library/groups/color_picker_parts.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr qreal kRadius = 5;
constexpr int kInset = 3;
constexpr int kStripWidth = 20;

QRectF areaOf(const QWidget& widget) {
    return QRectF(widget.rect()).adjusted(kInset, kInset, -kInset, -kInset);
}

QPointF stepOf(const QKeyEvent& event) {
    const double step = (event.modifiers() & Qt::ShiftModifier) != 0 ? 0.1 : 0.01;
    switch (event.key()) {
        case Qt::Key_Left:
            return {-step, 0};
        case Qt::Key_Right:
            return {step, 0};
        case Qt::Key_Up:
            return {0, -step};
        case Qt::Key_Down:
            return {0, step};
        default:
            return {};
    }
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

ColorField::ColorField(const QString& name, Qt::Orientations axes) : m_axes(axes) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
    setAccessibleDescription(QStringLiteral("The arrow keys change it"));
}

void ColorField::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

void ColorField::setPlace(const QPointF& place) {
    m_place = {std::clamp(place.x(), 0.0, 1.0), std::clamp(place.y(), 0.0, 1.0)};
    update();
}

void ColorField::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = areaOf(*this);
    paintColors(painter, area);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius + 2, m_look.ring);
    }
    paintHandle(painter, *this,
                area.topLeft() + QPointF(m_place.x() * area.width(), m_place.y() * area.height()),
                chosenColor());
}

void ColorField::mousePressEvent(QMouseEvent* event) {
    mouseMoveEvent(event);
}

void ColorField::mouseMoveEvent(QMouseEvent* event) {
    const QRectF area = areaOf(*this);
    const QPointF at = event->position() - area.topLeft();
    const bool isWide = m_axes.testFlag(Qt::Horizontal);
    setPlace({isWide ? at.x() / std::max(1.0, area.width()) : m_place.x(),
              at.y() / std::max(1.0, area.height())});
    Q_EMIT moved();
}

void ColorField::keyPressEvent(QKeyEvent* event) {
    QPointF step = stepOf(*event);
    if (step.isNull()) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (!m_axes.testFlag(Qt::Horizontal)) {
        step = {0, step.x() + step.y()};
    }
    setPlace(m_place + step);
    Q_EMIT moved();
}

ShadeSquare::ShadeSquare()
    : ColorField(QStringLiteral("Saturation and brightness"), Qt::Horizontal | Qt::Vertical) {}

void ShadeSquare::setHue(double hue) {
    m_hue = hue;
    update();
}

void ShadeSquare::paintColors(QPainter& painter, const QRectF& area) const {
    QLinearGradient saturation(area.topLeft(), area.topRight());
    saturation.setColorAt(0, Qt::white);
    saturation.setColorAt(1, QColor::fromHsvF(float(m_hue), 1, 1));
    fillRounded(painter, area, kRadius, saturation);
    QLinearGradient value(area.topLeft(), area.bottomLeft());
    value.setColorAt(0, Qt::transparent);
    value.setColorAt(1, Qt::black);
    fillRounded(painter, area, kRadius, value);
}

QColor ShadeSquare::chosenColor() const {
    return QColor::fromHsvF(float(m_hue), float(saturation()), float(value()));
}

HueStrip::HueStrip() : ColorField(QStringLiteral("Hue"), Qt::Vertical) {
    setFixedWidth(kStripWidth);
    setHue(0);
}

void HueStrip::paintColors(QPainter& painter, const QRectF& area) const {
    QLinearGradient hues(area.topLeft(), area.bottomLeft());
    constexpr int kStops = 6;
    for (int i = 0; i <= kStops; ++i) {
        hues.setColorAt(double(i) / kStops, QColor::fromHsvF(float(i % kStops) / kStops, 1, 1));
    }
    fillRounded(painter, area, kRadius, hues);
}

QColor HueStrip::chosenColor() const {
    return QColor::fromHsvF(float(hue()), 1, 1);
}

}  // namespace quillo
