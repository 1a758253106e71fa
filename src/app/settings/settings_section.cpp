// SPDX-License-Identifier: MIT
#include "app/settings/settings_section.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "app/settings/settings_look.h"
#include "app/settings/toggle_switch.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kPadding = 14;
constexpr int kRowPadding = 11;
constexpr int kPlainRowPadding = 8;
constexpr int kSymbol = 17;
constexpr qreal kRadius = 12;

}  // namespace

SettingsRow::SettingsRow(const Texts& texts, QWidget* parent)
    : QWidget(parent),
      m_symbol(texts.symbol),
      m_title(new FormLabel(FormLabel::Style::Title, texts.title)),
      m_caption(new FormLabel(FormLabel::Style::Caption)),
      m_line(new QHBoxLayout),
      m_titleLine(new QHBoxLayout),
      m_texts(new QVBoxLayout),
      m_column(new QVBoxLayout(this)) {
    m_column->setContentsMargins(kPadding, kRowPadding, kPadding, kRowPadding);
    m_column->setSpacing(8);
    m_column->addLayout(m_line);
    m_line->setSpacing(10);
    m_line->addSpacing(m_symbol.isEmpty() ? 0 : kSymbolColumn);
    m_texts->setSpacing(2);
    m_titleLine->setSpacing(10);
    m_titleLine->addWidget(m_title);
    m_titleLine->addStretch(1);
    m_texts->addStretch(1);
    m_texts->addLayout(m_titleLine);
    m_texts->addWidget(m_caption);
    m_texts->addStretch(1);
    m_line->addLayout(m_texts, 1);
    setCaption(texts.caption);
}

void SettingsRow::addInFront(QWidget* widget) {
    m_line->insertWidget(0, widget, 0, Qt::AlignVCenter);
}

void SettingsRow::addControl(QWidget* control) {
    m_line->addWidget(control, 0, Qt::AlignVCenter);
    if (qobject_cast<ToggleSwitch*>(control) != nullptr) {
        // The track ends where other controls do.
        m_column->setContentsMargins(kPadding, kRowPadding, kPadding - ToggleSwitch::kRoom,
                                     kRowPadding);
    }
}

void SettingsRow::addBesideTitle(QWidget* widget) {
    m_titleLine->insertWidget(m_titleLine->count() - 1, widget);
}

void SettingsRow::addBelow(QWidget* widget) {
    m_texts->insertWidget(m_texts->count() - 1, widget);
}

void SettingsRow::addFullWidth(QWidget* widget) {
    m_column->addWidget(widget);
}

void SettingsRow::setCaption(const QString& caption) {
    m_caption->setText(caption);
    m_caption->setVisible(!caption.isEmpty());
}

void SettingsRow::setSymbol(const QString& symbol) {
    m_symbol = symbol;
    update();
}

void SettingsRow::setPlain() {
    m_title->setStyle(FormLabel::Style::Text);
    m_column->setContentsMargins(kPadding, kPlainRowPadding, kPadding, kPlainRowPadding);
}

void SettingsRow::setDestructive() {
    m_isDestructive = true;
    update();
}

void SettingsRow::paintEvent(QPaintEvent* /*event*/) {
    if (m_symbol.isEmpty()) {
        return;
    }
    const SettingsLook& look = lookOf(*this);
    QPainter painter(this);
    const int middle = m_line->geometry().center().y();
    painter.drawPixmap(
        kPadding, middle - kSymbol / 2,
        symbolPixmap(m_symbol, kSymbol,
                     m_isDestructive ? look.destructive : look.controls.secondaryText,
                     devicePixelRatioF()));
}

SettingsSection::SettingsSection(const QString& heading, QWidget* parent)
    : QWidget(parent), m_box(new QWidget(this)), m_rows(new QVBoxLayout(m_box)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(7);
    if (!heading.isEmpty()) {
        m_heading = new FormLabel(FormLabel::Style::Heading, heading);
        m_heading->setContentsMargins(4, 0, 0, 0);
        column->addWidget(m_heading);
    }
    column->addWidget(m_box);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(1);
}

void SettingsSection::addRow(QWidget* row) {
    m_rows->addWidget(row);
}

bool SettingsSection::event(QEvent* event) {
    // The lines stand between rows, which are laid out by now.
    if (event->type() == QEvent::LayoutRequest) {
        update();
    }
    return QWidget::event(event);
}

void SettingsSection::paintEvent(QPaintEvent* /*event*/) {
    const SettingsLook& look = lookOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(m_box->geometry()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(look.sectionBorder, 1));
    painter.setBrush(look.section);
    painter.drawRoundedRect(box, kRadius, kRadius);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(look.sectionBorder);
    for (int index = 1; index < m_rows->count(); ++index) {
        const QRect row = m_rows->itemAt(index)->geometry().translated(m_box->pos());
        if (row.isValid()) {
            painter.drawLine(m_box->x() + 1, row.top() - 1, m_box->geometry().right() - 1,
                             row.top() - 1);
        }
    }
}

}  // namespace quillo
