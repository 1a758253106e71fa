// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QWidget>

#include "library/groups/popup_look.h"

namespace quillo {

class ColorSample;
class FormField;
class HueStrip;
class ShadeSquare;

/// Chooses any opaque colour: a square of saturation and value, a strip of hues and a field for
/// the hex text. The arrow keys move by a hundredth, with Shift by ten.
class ColorPicker final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 76;

    explicit ColorPicker(QWidget* parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    /// Sends no signal. The hue stays where it is for a grey, which has none.
    void setColor(const QColor& color);
    void setLook(const PopupLook& look);

    [[nodiscard]] FormField& hexField() { return *m_hex; }

Q_SIGNALS:
    /// The person chose another colour.
    void colorChanged(const QColor& color);

private:
    void choose();
    void hexEdited(const QString& text);
    void showHex();

    ShadeSquare* m_square;
    HueStrip* m_strip;
    ColorSample* m_sample;
    FormField* m_hex;
    QColor m_color = Qt::red;
};

}  // namespace quillo
