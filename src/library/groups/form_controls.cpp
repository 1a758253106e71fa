// SPDX-License-Identifier: MIT
#include "library/groups/form_controls.h"

#include <QHBoxLayout>
#include <QPainter>

#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/color_picker.h"
#include "library/groups/group_form.h"
#include "library/groups/swatch_row.h"

namespace quillo {
namespace {

constexpr qreal kFieldRadius = 7;
constexpr qreal kButtonRadius = 6;
constexpr int kButtonHeight = 26;
constexpr int kButtonPadding = 12;
constexpr int kSymbol = 14;
constexpr int kAfterSymbol = 7;
constexpr int kBareHeight = 22;

template <typename Control>
void dress(QWidget& root, const PopupLook& look) {
    const QList<Control*> controls = root.findChildren<Control*>();
    for (Control* control : controls) {
        control->setLook(look);
    }
}

}  // namespace

void dressControls(QWidget& root, const PopupLook& look) {
    dress<GroupForm>(root, look);
    dress<ColorPicker>(root, look);
    dress<SwatchRow>(root, look);
    dress<FormField>(root, look);
    dress<PushButton>(root, look);
}

QHBoxLayout* buttonRow(const QList<PushButton*>& buttons) {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch();
    for (PushButton* button : buttons) {
        row->addWidget(button);
    }
    return row;
}

void fillRounded(QPainter& painter, const QRectF& area, qreal radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(area, radius, radius);
}

void paintFocusRing(QPainter& painter, const QRectF& around, qreal radius, const QColor& color) {
    painter.setPen(QPen(color, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(around.adjusted(1, 1, -1, -1), radius, radius);
}

FormField::FormField(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    setFont(sizedFont(font(), 13, QFont::Normal));
    setFixedHeight(kHeight);
    setTextMargins(8, 0, 8, 0);
}

void FormField::setLook(const PopupLook& look) {
    m_look = look;
    applyLook(*this, look);
    QPalette roles = palette();
    roles.setColor(QPalette::Base, Qt::transparent);
    setPalette(roles);
}

void FormField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_look.fieldBorder, 1));
    painter.setBrush(m_look.field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kFieldRadius,
                            kFieldRadius);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kFieldRadius, m_look.ring);
    }
    painter.end();
    QLineEdit::paintEvent(event);
}

PushButton::PushButton(Style style, const QString& text, QWidget* parent)
    : PanelButton(QAccessible::PushButton, parent), m_style(style) {
    setText(text);
    setAccessibleName(text);
    setFont(sizedFont(font(), style == Style::Link ? 12 : 13,
                      hasGround() ? QFont::Medium : QFont::Normal));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PushButton::setSymbol(const QString& name) {
    m_symbol = name;
    updateGeometry();
    update();
}

void PushButton::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

bool PushButton::hasGround() const {
    return m_style != Style::Bare && m_style != Style::Link;
}

int PushButton::symbolWidth() const {
    return m_symbol.isEmpty() ? 0 : kSymbol + (text().isEmpty() ? 0 : kAfterSymbol);
}

QSize PushButton::sizeHint() const {
    const int width = symbolWidth() + fontMetrics().horizontalAdvance(QAbstractButton::text());
    return hasGround() ? QSize(width + 2 * kButtonPadding, kButtonHeight)
                       : QSize(text().isEmpty() ? kBareHeight : width + 4, kBareHeight);
}

QColor PushButton::ground() const {
    const QColor base = m_style == Style::Default ? m_look.accent : m_look.field;
    const QColor towards = m_style == Style::Default ? QColor(Qt::black) : m_look.primaryText;
    const double share = isDown() ? 0.16 : underMouse() ? 0.08 : 0.0;
    return mixed(base, towards, share);
}

QColor PushButton::ink() const {
    switch (m_style) {
        case Style::Default:
            return readableText(m_look.onAccent, {ground()});
        case Style::Plain:
            return readableText(m_look.primaryText, {ground()});
        case Style::Destructive:
            return readableText(m_look.destructive, {ground()});
        case Style::Link:
            return underMouse() ? m_look.primaryText : m_look.accentText;
        case Style::Bare:
            break;
    }
    return underMouse() || isChecked() ? m_look.primaryText : m_look.secondaryText;
}

void PushButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : 0.5);
    if (hasGround()) {
        fillRounded(painter, rect(), kButtonRadius, ground());
    }
    QRect line = rect();
    if (hasGround() || text().isEmpty()) {
        line.setLeft((width() - symbolWidth() - fontMetrics().horizontalAdvance(text())) / 2);
    }
    if (!m_symbol.isEmpty()) {
        painter.drawPixmap(line.left(), (height() - kSymbol) / 2,
                           symbolPixmap(m_symbol, kSymbol, ink(), devicePixelRatioF()));
        line.adjust(symbolWidth(), 0, 0, 0);
    }
    painter.setPen(ink());
    painter.drawText(line, Qt::AlignVCenter | Qt::AlignLeft, text());
    if (hasFocus()) {
        const bool isDefault = m_style == Style::Default;
        const QRectF around = isDefault ? QRectF(rect()).adjusted(2, 2, -2, -2) : QRectF(rect());
        paintFocusRing(painter, around, kButtonRadius - (isDefault ? 2 : 0),
                       isDefault ? m_look.onAccent : m_look.ring);
    }
}

}  // namespace quillo
