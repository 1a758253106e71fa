// SPDX-License-Identifier: MIT
#include "library/groups/color_picker.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QVBoxLayout>

#include "base/color_text.h"
#include "library/groups/color_picker_parts.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kHexWidth = 84;

}  // namespace

/// Shows the colour that is chosen.
class ColorSample final : public QWidget {
public:
    void setColor(const QColor& color) {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        fillRounded(painter, rect().adjusted(0, 3, 0, 0), 5, m_color);
    }

private:
    QColor m_color;
};

ColorPicker::ColorPicker(QWidget* parent)
    : QWidget(parent),
      m_square(new ShadeSquare),
      m_strip(new HueStrip),
      m_sample(new ColorSample),
      m_hex(new FormField) {
    setFixedHeight(kHeight);
    m_hex->setMaxLength(9);
    m_hex->setFixedWidth(kHexWidth);
    m_hex->setPlaceholderText(QStringLiteral("#RRGGBB"));
    m_hex->setAccessibleName(QStringLiteral("Color as hex"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(m_square, 1);
    row->addWidget(m_strip);
    auto* column = new QVBoxLayout;
    column->setSpacing(6);
    column->addWidget(m_sample, 1);
    column->addWidget(m_hex);
    column->addSpacing(3);
    row->addLayout(column);
    setColor(m_color);
    m_sample->setColor(m_color);
    showHex();
    connect(m_square, &ColorField::moved, this, &ColorPicker::choose);
    connect(m_strip, &ColorField::moved, this, &ColorPicker::choose);
    connect(m_hex, &QLineEdit::textEdited, this, &ColorPicker::hexEdited);
    connect(m_hex, &QLineEdit::editingFinished, this, &ColorPicker::showHex);
}

void ColorPicker::setColor(const QColor& color) {
    m_color = color;
    const QColor wanted = color.toHsv();
    if (wanted.hsvHueF() >= 0) {
        m_strip->setHue(wanted.hsvHueF());
    }
    m_square->setHue(m_strip->hue());
    m_square->setShade(wanted.hsvSaturationF(), wanted.valueF());
    m_sample->setColor(color);
    if (!m_hex->hasFocus()) {
        showHex();
    }
}

void ColorPicker::setLook(const PopupLook& look) {
    m_square->setLook(look);
    m_strip->setLook(look);
    m_hex->setLook(look);
}

void ColorPicker::choose() {
    m_square->setHue(m_strip->hue());
    const QColor chosen = m_square->chosenColor();
    m_color = QColor(chosen.red(), chosen.green(), chosen.blue());
    m_sample->setColor(m_color);
    showHex();
    Q_EMIT colorChanged(m_color);
}

void ColorPicker::hexEdited(const QString& text) {
    if (auto color = colorFromHex(text)) {
        color->setAlpha(255);
        setColor(*color);
        Q_EMIT colorChanged(*color);
    }
}

void ColorPicker::showHex() {
    m_hex->setText(hexString(m_color));
}

}  // namespace quillo
