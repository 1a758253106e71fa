// SPDX-License-Identifier: MIT
#include "app/settings/color_well.h"

#include <QPainter>
#include <QVBoxLayout>

#include "app/settings/settings_look.h"
#include "base/color_text.h"
#include "library/groups/color_picker.h"
#include "library/groups/form_controls.h"
#include "library/groups/form_label.h"
#include "library/groups/swatch_row.h"

namespace quillo {
namespace {

constexpr QSize kSize(40, 22);
constexpr qreal kRadius = 6;
constexpr int kSheetWidth = 250;

}  // namespace

ColorWell::ColorWell(const QString& name, QWidget* parent)
    : PanelButton(QAccessible::PushButton, parent) {
    setAccessibleName(name);
    setToolTip(QStringLiteral("Choose a color"));
    setHasPopup(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(sizeHint());
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openSheet);
}

QSize ColorWell::sizeHint() const {
    return kSize;
}

void ColorWell::setColor(const QColor& color) {
    m_color = color;
    setAccessibleDescription(hexString(color));
    update();
    if (m_picker != nullptr && m_picker->color() != color) {
        m_picker->setColor(color);
    }
    if (m_swatches != nullptr) {
        m_swatches->setColor(color);
    }
}

void ColorWell::openSheet() {
    auto* sheet = new Sheet(this, settingsControls);
    sheet->setAccessibleName(accessibleName());
    auto* content = new QWidget;
    content->setFixedWidth(kSheetWidth);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addWidget(new FormLabel(FormLabel::Style::Title, accessibleName()));
    m_swatches = new SwatchRow;
    m_picker = new ColorPicker;
    auto* done = new PushButton(PushButton::Style::Default, QStringLiteral("Done"));
    column->addWidget(m_swatches);
    column->addWidget(m_picker);
    column->addWidget(done, 0, Qt::AlignRight);
    setColor(m_color);
    connect(m_swatches, &SwatchRow::chosen, this, &ColorWell::chosen);
    connect(m_picker, &ColorPicker::colorChanged, this, &ColorWell::chosen);
    connect(done, &QAbstractButton::clicked, sheet, &Sheet::closeSheet);
    sheet->setContent(content);
    sheet->open(done);
}

void ColorWell::paintEvent(QPaintEvent* /*event*/) {
    const PopupLook& look = lookOf(*this).controls;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(underMouse() ? look.secondaryText : look.fieldBorder, 1));
    painter.setBrush(m_color);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    if (hasFocus()) {
        // The ground between them tells the ring from a colour that is like it.
        painter.setPen(QPen(look.ground, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(3, 3, -3, -3), kRadius - 2, kRadius - 2);
        paintFocusRing(painter, rect(), kRadius, look.ring);
    }
}

}  // namespace quillo
