// SPDX-License-Identifier: MIT
#include "overlay/search_field.h"

#include <QAction>
#include <QPainter>

#include "appearance/fonts.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kGlassSize = 14;
constexpr int kGlassLeft = 10;
constexpr int kTextLeft = 30;
constexpr qreal kRadius = 7;

}  // namespace

SearchField::SearchField(QWidget* parent)
    : QLineEdit(parent), m_clear(new QAction(QStringLiteral("Clear search"), this)) {
    setFrame(false);
    setFont(sizedFont(font(), 13, QFont::Normal));
    setPlaceholderText(QStringLiteral("Search clips..."));
    setAccessibleName(QStringLiteral("Search clips"));
    setToolTip(QStringLiteral("Search text, addresses, file names and programs (Ctrl+F)"));
    setTextMargins(kRing + kTextLeft - 2, 0, kRing, 0);
    addAction(m_clear, QLineEdit::TrailingPosition);
    m_clear->setVisible(false);
    connect(m_clear, &QAction::triggered, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, m_clear,
            [this](const QString& text) { m_clear->setVisible(!text.isEmpty()); });
}

void SearchField::setColors(const Palette& colors) {
    m_colors = colors;
    QPalette roles = palette();
    roles.setColor(QPalette::Base, Qt::transparent);
    roles.setColor(QPalette::Text, colors.primaryText);
    roles.setColor(QPalette::PlaceholderText, colors.secondaryText);
    setPalette(roles);
    m_clear->setIcon(symbolPixmap(QStringLiteral("xmark.circle.fill"), kGlassSize,
                                  colors.secondaryText, devicePixelRatioF()));
    update();
}

void SearchField::typeText(const QString& text) {
    setFocus(Qt::ShortcutFocusReason);
    end(false);
    insert(text);
}

void SearchField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.field);
    painter.drawRoundedRect(rect().adjusted(kRing, kRing, -kRing, -kRing), kRadius, kRadius);
    if (hasFocus()) {
        painter.setPen(QPen(m_colors.accent, kRing));
        painter.setBrush(Qt::NoBrush);
        constexpr qreal kInset = kRing / 2.0;
        painter.drawRoundedRect(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset),
                                kRadius + kInset, kRadius + kInset);
    }
    painter.drawPixmap(kRing + kGlassLeft, (height() - kGlassSize) / 2,
                       symbolPixmap(QStringLiteral("magnifyingglass"), kGlassSize,
                                    m_colors.secondaryText, devicePixelRatioF()));
    painter.end();
    QLineEdit::paintEvent(event);
}

}  // namespace quillo
