// SPDX-License-Identifier: MIT
#include "app/settings/value_slider.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <cmath>

#include "app/settings/settings_look.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr qreal kTrack = 4;
constexpr qreal kKnob = 16;
constexpr qreal kRoom = 3;  // Around the knob, for the focus ring.
constexpr int kPageSteps = 4;

int stepsOf(const ValueSlider::Range& range, double value) {
    return int(std::lround((value - range.least) / range.step));
}

}  // namespace

ValueSlider::ValueSlider(const QString& name, Range range, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), m_range(range) {
    setAccessibleName(name);
    setRange(0, stepsOf(range, range.greatest));
    setSingleStep(1);
    setPageStep(kPageSteps);
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(sizeHint().height());
    connect(this, &QSlider::valueChanged, this, [this] {
        if (!m_isShowing) {
            Q_EMIT chosen(shownValue());
        }
    });
}

void ValueSlider::setShownValue(double value) {
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    setValue(std::isfinite(value) ? stepsOf(m_range, qBound(m_range.least, value, m_range.greatest))
                                  : maximum());
}

double ValueSlider::shownValue() const {
    // To hundredths, so that a chosen 0.85 is stored as 0.85.
    return std::round((m_range.least + value() * m_range.step) * 100) / 100;
}

void ValueSlider::paintEvent(QPaintEvent* /*event*/) {
    const SettingsLook& look = lookOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal middle = height() / 2.0;
    const qreal room = width() - kKnob - 2 * kRoom;
    const qreal x = kRoom + kKnob / 2 + room * value() / qMax(1, maximum());
    const QRectF track(kRoom, middle - kTrack / 2, width() - 2 * kRoom, kTrack);
    fillRounded(painter, track, kTrack / 2, look.track);
    painter.setBrush(look.controls.accent);
    painter.drawRoundedRect(QRectF(track.left(), track.top(), x - track.left(), kTrack), kTrack / 2,
                            kTrack / 2);
    painter.setPen(QPen(look.controls.fieldBorder, 1));
    painter.setBrush(Qt::white);
    const QRectF knob(x - kKnob / 2, middle - kKnob / 2, kKnob, kKnob);
    painter.drawEllipse(knob);
    if (hasFocus()) {
        const QRectF around = knob.adjusted(-kRoom, -kRoom, kRoom, kRoom);
        paintFocusRing(painter, around, around.width() / 2, look.controls.ring);
    }
}

void ValueSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        goTo(event->position().x());
    }
}

void ValueSlider::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        goTo(event->position().x());
    }
}

void ValueSlider::wheelEvent(QWheelEvent* event) {
    // Otherwise scrolling the page would change what passes beneath the pointer.
    if (hasFocus()) {
        QSlider::wheelEvent(event);
    } else {
        event->ignore();
    }
}

void ValueSlider::goTo(qreal x) {
    const qreal room = width() - kKnob - 2 * kRoom;
    setValue(int(std::lround((x - kRoom - kKnob / 2) / qMax(1.0, room) * maximum())));
}

QString percentText(double share) {
    return QStringLiteral("%1%").arg(std::lround(qBound(0.0, share, 1.0) * 100));
}

}  // namespace quillo
