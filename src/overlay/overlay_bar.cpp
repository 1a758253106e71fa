// SPDX-License-Identifier: MIT
#include "overlay/overlay_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "overlay/search_field.h"

namespace quillo {
namespace {

constexpr int kSymbolSize = 14;
constexpr int kGapBeforeSearch = 24;

void setTextColor(QWidget* widget, const QColor& color) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::ButtonText, color);
    widget->setPalette(palette);
}

}  // namespace

OverlayBar::OverlayBar(QWidget* parent)
    : QWidget(parent),
      m_name(new QLabel(QStringLiteral("Quillo"))),
      m_total(new QLabel),
      m_search(new SearchField) {
    setFixedHeight(kHeight);
    m_name->setFont(sizedFont(font(), 13, QFont::Bold));
    m_total->setFont(sizedFont(font(), 12, QFont::Normal));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(16, 0, 16, 0);
    row->setSpacing(10);
    row->addWidget(m_name);
    row->addWidget(m_total);
    row->addSpacing(kGapBeforeSearch);
    row->addWidget(m_search, 1);
    row->addStretch();
    m_lock = addButton(QStringLiteral("Pinned"), QString());
    m_lock->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_close = addButton(QStringLiteral("Close"), QStringLiteral("Close (Esc)"));
    connect(m_lock, &QToolButton::clicked, this, &OverlayBar::lockToggled);
    connect(m_close, &QToolButton::clicked, this, &OverlayBar::closeRequested);
    // The search field stays where it is whatever is counted.
    setTotal(9'999'999);
    m_total->setMinimumWidth(m_total->sizeHint().width());
    setTotal(0);
    setLocked(true);
}

QToolButton* OverlayBar::addButton(const QString& name, const QString& tip) {
    auto* button = new QToolButton;
    button->setAutoRaise(true);
    button->setFont(sizedFont(font(), 12, QFont::Normal));
    button->setIconSize(QSize(kSymbolSize, kSymbolSize));
    button->setAccessibleName(name);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::TabFocus);
    layout()->addWidget(button);
    return button;
}

void OverlayBar::setTotal(qsizetype total) {
    m_total->setText(QStringLiteral("· %1 total").arg(QLocale().toString(total)));
}

void OverlayBar::setLocked(bool isLocked) {
    m_isLocked = isLocked;
    m_lock->setText(isLocked ? QStringLiteral("Pinned") : QStringLiteral("Drag"));
    m_lock->setAccessibleName(m_lock->text());
    m_lock->setToolTip(isLocked ? QStringLiteral("Unlock to drag panel")
                                : QStringLiteral("Pin panel position"));
    updateIcons();
}

void OverlayBar::setColors(const Palette& colors) {
    m_colors = colors;
    setTextColor(m_name, colors.primaryText);
    m_search->setColors(colors);
    for (QWidget* widget : {static_cast<QWidget*>(m_total), static_cast<QWidget*>(m_lock),
                            static_cast<QWidget*>(m_close)}) {
        setTextColor(widget, colors.secondaryText);
    }
    updateIcons();
}

void OverlayBar::updateIcons() {
    const QColor color = m_colors.secondaryText;
    const QString lock = m_isLocked ? QStringLiteral("pin.fill") : QStringLiteral("pin.slash");
    m_lock->setIcon(symbolPixmap(lock, kSymbolSize, color, devicePixelRatioF()));
    m_close->setIcon(
        symbolPixmap(QStringLiteral("xmark.circle.fill"), kSymbolSize, color, devicePixelRatioF()));
}

}  // namespace quillo
