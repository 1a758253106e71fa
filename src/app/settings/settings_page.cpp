// SPDX-License-Identifier: MIT
#include "app/settings/settings_page.h"

#include <QVBoxLayout>

#include "library/groups/slim_scroll_bar.h"

namespace quillo {
namespace {

constexpr int kMargin = 20;
constexpr int kTop = 16;
constexpr int kSpacing = 12;

}  // namespace

SettingsPage::SettingsPage(const QString& name, QWidget* parent) : QScrollArea(parent) {
    setAccessibleName(name);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto* content = new QWidget;
    content->setAutoFillBackground(false);
    m_column = new QVBoxLayout(content);
    m_column->setContentsMargins(kMargin, kTop, kMargin, kTop);
    m_column->setSpacing(kSpacing);
    m_column->addStretch(1);
    setWidget(content);
    viewport()->setAutoFillBackground(false);
    new SlimScrollBar(*this);
}

void SettingsPage::addSection(QWidget* section) {
    m_column->insertWidget(m_column->count() - 1, section);
}

bool SettingsPage::focusNextPrevChild(bool next) {
    const bool hasMoved = QScrollArea::focusNextPrevChild(next);
    if (QWidget* focused = focusWidget()) {
        ensureWidgetVisible(focused, 0, 2 * kMargin);
    }
    return hasMoved;
}

}  // namespace quillo
