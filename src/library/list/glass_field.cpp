// SPDX-License-Identifier: MIT
#include "library/list/glass_field.h"

#include <QAction>
#include <QPainter>

#include "appearance/fonts.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kGlassSize = 14;
constexpr int kGlassLeft = 10;
constexpr int kTextLeft = 30;

}  // namespace

GlassField::GlassField(int insetPx, QWidget* parent)
    : QLineEdit(parent),
      m_insetPx(insetPx),
      m_clear(new QAction(QStringLiteral("Clear search"), this)) {
    setFrame(false);
    setFont(sizedFont(font(), 13, QFont::Normal));
    setTextMargins(insetPx + kTextLeft - 2, 0, insetPx, 0);
    addAction(m_clear, QLineEdit::TrailingPosition);
    m_clear->setVisible(false);
    connect(m_clear, &QAction::triggered, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, m_clear,
            [this](const QString& text) { m_clear->setVisible(!text.isEmpty()); });
}

void GlassField::applyColors(const Palette& colors) {
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

void GlassField::paintGlass(QPainter& painter) const {
    painter.drawPixmap(m_insetPx + kGlassLeft, (height() - kGlassSize) / 2,
                       symbolPixmap(QStringLiteral("magnifyingglass"), kGlassSize,
                                    m_colors.secondaryText, devicePixelRatioF()));
}

}  // namespace quillo
