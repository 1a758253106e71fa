// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

#include "appearance/palette.h"

class QPainter;

namespace quillo {

/// What search fields share: a magnifying glass before the text and, while there is text, a button
/// that empties the field. The ground is the class's own to paint.
class GlassField : public QLineEdit {
    Q_OBJECT

public:
    static constexpr qreal kRadius = 7;

protected:
    /// The inset is what the class keeps free at both sides, in logical pixels.
    explicit GlassField(int insetPx, QWidget* parent = nullptr);

    /// Text, glass and button take these; the ground's are left to the class.
    void applyColors(const Palette& colors);
    [[nodiscard]] const Palette& colors() const { return m_colors; }
    void paintGlass(QPainter& painter) const;

private:
    int m_insetPx;
    Palette m_colors = paletteFor(ColorScheme::Light);
    QAction* m_clear;
};

}  // namespace quillo
