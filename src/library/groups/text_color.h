// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quillo {

/// Gives a label the colour of its text.
inline void setTextColor(QWidget& widget, const QColor& color) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::WindowText, color);
    widget.setPalette(palette);
}

}  // namespace quillo
