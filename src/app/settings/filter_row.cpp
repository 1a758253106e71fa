// SPDX-License-Identifier: MIT
#include "app/settings/filter_row.h"

#include <QPainter>

#include "app/settings/settings_look.h"
#include "app/settings/toggle_switch.h"
#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kPadding = 14;
constexpr int kHandle = 13;
constexpr int kSymbol = 15;
constexpr int kSymbolX = 35;
constexpr int kTextX = 60;
constexpr qreal kRadius = 8;

}  // namespace

FilterRow::FilterRow(FilterType filter, QWidget* parent)
    : QWidget(parent), m_filter(filter), m_toggle(new ToggleSwitch(label(filter), this)) {
    setObjectName(rawValue(filter));
    setAccessibleName(label(filter));
    setFont(sizedFont(font(), 13, QFont::Normal));
    setCursor(Qt::OpenHandCursor);
    m_toggle->setCursor(Qt::ArrowCursor);
    m_toggle->setToolTip(QStringLiteral("Show this filter in the panel"));
}

void FilterRow::setPlace(qsizetype index, qsizetype count) {
    const QString place = QStringLiteral("%1 of %2. Alt+Up and Alt+Down move it.");
    m_toggle->setAccessibleDescription(place.arg(index + 1).arg(count));
    setAccessibleDescription(m_toggle->accessibleDescription());
}

void FilterRow::setLifted(bool isLifted) {
    m_isLifted = isLifted;
    setCursor(isLifted ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    update();
}

void FilterRow::resizeEvent(QResizeEvent* /*event*/) {
    m_toggle->move(width() - kPadding - m_toggle->width() + ToggleSwitch::kRoom,
                   (height() - m_toggle->height()) / 2);
}

void FilterRow::paintEvent(QPaintEvent* /*event*/) {
    const SettingsLook& look = lookOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isLifted) {
        painter.setPen(QPen(look.controls.accent, 1));
        painter.setBrush(mixed(look.section, look.controls.primaryText, 0.06));
        painter.drawRoundedRect(QRectF(rect()).adjusted(4.5, 1.5, -4.5, -1.5), kRadius, kRadius);
    }
    const qreal ratio = devicePixelRatioF();
    painter.drawPixmap(kPadding, (height() - kHandle) / 2,
                       symbolPixmap(QStringLiteral("line.3.horizontal"), kHandle,
                                    look.controls.secondaryText, ratio));
    painter.drawPixmap(kSymbolX, (height() - kSymbol) / 2,
                       symbolPixmap(icon(m_filter), kSymbol, look.controls.primaryText, ratio));
    painter.setPen(look.controls.primaryText);
    painter.drawText(rect().adjusted(kTextX, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     label(m_filter));
}

}  // namespace quillo
