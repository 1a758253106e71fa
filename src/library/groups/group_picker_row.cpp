// SPDX-License-Identifier: MIT
#include "library/groups/group_picker_row.h"

#include <QPainter>

#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kPadding = 9;
constexpr int kSymbol = 16;
constexpr int kSquare = 12;
constexpr int kGap = 8;
constexpr qreal kRadius = 6;

}  // namespace

GroupPickerRow::GroupPickerRow(QAccessible::Role role, const Content& content, QWidget* parent)
    : PanelButton(role, parent), m_content(content) {
    setFont(sizedFont(font(), 13, QFont::Normal));
    setAccessibleName(content.title.isEmpty() ? QStringLiteral("Group without a name")
                                              : content.title);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFixedHeight(kHeight);
}

void GroupPickerRow::setSymbol(const QString& name) {
    m_symbol = name;
    update();
}

void GroupPickerRow::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

QSize GroupPickerRow::sizeHint() const {
    return {2 * kPadding + kSymbol + kGap + kSquare + kGap +
                fontMetrics().horizontalAdvance(m_content.title),
            kHeight};
}

void GroupPickerRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isRaised = underMouse() || isDown();
    const QColor ground = isRaised ? m_look.field : m_look.ground;
    if (isRaised) {
        fillRounded(painter, rect(), kRadius, ground);
    }
    int x = kPadding;
    const bool isAccented = isChecked() || !isCheckable();
    const QColor mark =
        readableText(isAccented ? m_look.accentText : m_look.secondaryText, {ground});
    painter.drawPixmap(x, (height() - kSymbol) / 2,
                       symbolPixmap(m_symbol, kSymbol, mark, devicePixelRatioF()));
    x += kSymbol + kGap;
    if (m_content.hasColor) {
        fillRounded(painter, QRectF(x, (height() - kSquare) / 2.0, kSquare, kSquare), 3,
                    m_content.color.value_or(m_look.accent));
        x += kSquare + kGap;
    }
    painter.setPen(m_look.primaryText);
    const int room = width() - x - kPadding;
    painter.drawText(QRect(x, 0, room, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(m_content.title, Qt::ElideRight, room));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius, m_look.ring);
    }
}

}  // namespace quillo
