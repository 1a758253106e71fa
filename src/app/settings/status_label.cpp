// SPDX-License-Identifier: MIT
#include "app/settings/status_label.h"

#include <QHBoxLayout>
#include <QPainter>

#include "app/settings/settings_look.h"
#include "library/groups/form_label.h"

namespace quillo {
namespace {

constexpr QColor kGood(0x6b, 0xcb, 0x77);
constexpr qreal kDot = 7;
constexpr int kTextLeft = 12;

}  // namespace

StatusLabel::StatusLabel(QWidget* parent)
    : QWidget(parent), m_text(new FormLabel(FormLabel::Style::Status)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(kTextLeft, 0, 0, 0);
    row->addWidget(m_text);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StatusLabel::setStatus(const QString& text, bool isGood) {
    m_isGood = isGood;
    m_text->setText(text);
    m_text->setStyle(isGood ? FormLabel::Style::Success : FormLabel::Style::Status);
    update();
}

QString StatusLabel::text() const {
    return m_text->text();
}

void StatusLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_isGood ? kGood : lookOf(*this).controls.secondaryText);
    painter.drawEllipse(QRectF(0, (height() - kDot) / 2, kDot, kDot));
}

}  // namespace quillo
