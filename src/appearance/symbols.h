// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

namespace quillo {

/// One of the program's own symbols ("doc.text", "globe", ...) drawn in a colour. size is in
/// logical pixels, ratio the screen's device pixels per logical one. Drawn once and kept; an
/// unknown name gives a null pixmap. Main thread.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, int size, const QColor& color, qreal ratio);

}  // namespace quillo
