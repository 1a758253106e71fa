// SPDX-License-Identifier: MIT
#include "app/settings/toggle_switch.h"

#include <QPainter>

#include "app/settings/settings_look.h"
#include "appearance/contrast.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr QSize kTrack(36, 21);
constexpr qreal kKnob = 17;

}  // namespace

ToggleSwitch::ToggleSwitch(const QString& name, QWidget* parent)
    : PanelButton(QAccessible::CheckBox, parent) {
    setCheckable(true);
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(sizeHint());
    connect(this, &QAbstractButton::clicked, this, [this] {
        setChecked(!isChecked());
        Q_EMIT toggledByPerson(isChecked());
    });
}

QSize ToggleSwitch::sizeHint() const {
    return kTrack + QSize(2 * kRoom, 2 * kRoom);
}

void ToggleSwitch::paintEvent(QPaintEvent* /*event*/) {
    const SettingsLook& look = lookOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : 0.5);
    const QRectF track(QPointF(kRoom, kRoom), QSizeF(kTrack));
    QColor ground = isChecked() ? look.controls.accent : look.track;
    if (underMouse() && isEnabled()) {
        ground = mixed(ground, look.controls.primaryText, 0.08);
    }
    fillRounded(painter, track, track.height() / 2, ground);
    const qreal gap = (track.height() - kKnob) / 2;
    const qreal x = isChecked() ? track.right() - gap - kKnob : track.left() + gap;
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(x, track.top() + gap, kKnob, kKnob));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), height() / 2.0, look.controls.ring);
    }
}

}  // namespace quillo
