// SPDX-License-Identifier: MIT
#include "app/settings/choice_box.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QWheelEvent>

#include "app/settings/settings_look.h"
#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr QSize kSize(130, 26);
constexpr int kPadding = 10;
constexpr int kArrow = 12;
constexpr qreal kRadius = 6;

}  // namespace

ChoiceBox::ChoiceBox(const QString& name, QWidget* parent) : QComboBox(parent) {
    setAccessibleName(name);
    setFont(sizedFont(font(), 13, QFont::Normal));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(kSize);
    setMaxVisibleItems(15);
}

QSize ChoiceBox::sizeHint() const {
    return kSize;
}

void ChoiceBox::paintEvent(QPaintEvent* /*event*/) {
    const PopupLook& look = lookOf(*this).controls;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), kRadius,
                underMouse() ? mixed(look.field, look.primaryText, 0.08) : look.field);
    painter.setPen(look.primaryText);
    const QRect text = rect().adjusted(kPadding, 0, -2 * kPadding - kArrow, 0);
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(currentText(), Qt::ElideRight, text.width()));
    painter.drawPixmap(width() - kPadding - kArrow, (height() - kArrow) / 2,
                       symbolPixmap(QStringLiteral("chevron.down"), kArrow, look.secondaryText,
                                    devicePixelRatioF()));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius, look.ring);
    }
}

void ChoiceBox::wheelEvent(QWheelEvent* event) {
    // Otherwise scrolling the page would change what passes beneath the pointer.
    if (hasFocus()) {
        QComboBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

}  // namespace quillo
