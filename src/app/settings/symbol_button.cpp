// SPDX-License-Identifier: MIT
#include "app/settings/symbol_button.h"

#include <QPainter>

#include "app/settings/settings_look.h"
#include "appearance/contrast.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kSize = 26;
constexpr int kSymbol = 16;
constexpr qreal kRadius = 6;

}  // namespace

SymbolButton::SymbolButton(QString symbol, const QString& tip, QWidget* parent)
    : PanelButton(QAccessible::PushButton, parent), m_symbol(std::move(symbol)) {
    setToolTip(tip);
    setAccessibleName(tip);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(sizeHint());
}

QSize SymbolButton::sizeHint() const {
    return {kSize, kSize};
}

void SymbolButton::paintEvent(QPaintEvent* /*event*/) {
    const PopupLook& look = lookOf(*this).controls;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        fillRounded(painter, rect(), kRadius,
                    isDown() ? mixed(look.field, look.primaryText, 0.1) : look.field);
    }
    constexpr int kInset = (kSize - kSymbol) / 2;
    painter.drawPixmap(
        kInset, kInset,
        symbolPixmap(m_symbol, kSymbol, underMouse() ? look.primaryText : look.secondaryText,
                     devicePixelRatioF()));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius, look.ring);
    }
}

}  // namespace quillo
