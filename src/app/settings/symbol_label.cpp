// SPDX-License-Identifier: MIT
#include "app/settings/symbol_label.h"

#include <QPainter>
#include <utility>

#include "app/settings/settings_look.h"
#include "appearance/symbols.h"

namespace quillo {

SymbolLabel::SymbolLabel(QString symbol, int size, Ink ink, QWidget* parent)
    : QWidget(parent), m_symbol(std::move(symbol)), m_ink(ink) {
    setFixedSize(size, size);
}

void SymbolLabel::paintEvent(QPaintEvent* /*event*/) {
    const SettingsLook& look = lookOf(*this);
    QPainter painter(this);
    painter.drawPixmap(
        0, 0,
        symbolPixmap(m_symbol, width(),
                     m_ink == Ink::Success ? look.success : look.controls.secondaryText,
                     devicePixelRatioF()));
}

}  // namespace quillo
