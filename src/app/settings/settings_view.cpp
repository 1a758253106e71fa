// SPDX-License-Identifier: MIT
#include "app/settings/settings_view.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

#include "app/settings/appearance_page.h"
#include "app/settings/capture_page.h"
#include "app/settings/general_page.h"
#include "app/settings/privacy_page.h"
#include "app/settings/settings_look.h"
#include "appearance/theme_manager.h"
#include "hotkey/hotkey_manager.h"

namespace quillo {
namespace {

constexpr int kDivider = 1;
constexpr QSize kSize(500, 450);

}  // namespace

SettingsView::SettingsView(const SettingsServices& services, QWidget* parent)
    : QWidget(parent),
      m_services(services),
      m_tabs(new SettingsTabBar(this)),
      m_pages(new QStackedWidget(this)) {
    resize(kSize);
    setAutoFillBackground(true);
    setFocusPolicy(Qt::ClickFocus);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kDivider);
    column->addWidget(m_tabs);
    column->addWidget(m_pages, 1);
    useScheme();
    connect(m_tabs, &SettingsTabBar::chosen, this, &SettingsView::selectTab);
    connect(&services.themeManager, &ThemeManager::effectiveSchemeChanged, this,
            &SettingsView::useScheme);
    selectTab(m_selectedTab);
}

void SettingsView::selectTab(SettingsTab tab) {
    const bool wasInTabs = m_tabs->isAncestorOf(focusWidget());
    m_selectedTab = tab;
    m_tabs->setSelectedTab(tab);
    m_pages->setCurrentWidget(page(tab));
    if (wasInTabs) {
        m_tabs->focusSelected();
    } else {
        // The control that had it is on a page that is no longer shown.
        setFocus(Qt::OtherFocusReason);
    }
}

QWidget* SettingsView::page(SettingsTab tab) {
    QWidget*& made = m_made.at(size_t(std::to_underlying(tab)));
    if (made == nullptr) {
        made = makePage(tab);
        m_pages->addWidget(made);
        applySettingsLook(*made);
    }
    return made;
}

QWidget* SettingsView::makePage(SettingsTab tab) {
    switch (tab) {
        case SettingsTab::General:
            return new GeneralPage(m_services);
        case SettingsTab::Capture:
            return new CapturePage(m_services);
        case SettingsTab::Appearance:
            return makeAppearancePage(m_services).release();
        case SettingsTab::Privacy:
            break;
    }
    return new PrivacyPage(desktopSession(), m_services.persistence.storePath());
}

void SettingsView::useScheme() {
    setPalette(settingsPalette(m_services.themeManager.effectiveScheme()));
    applySettingsLook(*this);
}

void SettingsView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        update();
    }
}

void SettingsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_services.hotkeyManager.retryIfDisabled();
    if (!event->spontaneous()) {
        // So that the keys reach it, and no control looks chosen before one is.
        setFocus(Qt::OtherFocusReason);
    }
}

void SettingsView::keyPressEvent(QKeyEvent* event) {
    const bool isControl = event->modifiers().testFlag(Qt::ControlModifier);
    const bool closes = event->key() == Qt::Key_Escape || (isControl && event->key() == Qt::Key_W);
    if (closes && !event->isAutoRepeat()) {
        window()->close();
    } else if (!selectByKey(*event)) {
        QWidget::keyPressEvent(event);
    }
}

bool SettingsView::selectByKey(const QKeyEvent& event) {
    const bool isControl = event.modifiers().testFlag(Qt::ControlModifier);
    const int key = event.key();
    if (isControl && key >= Qt::Key_1 && key <= Qt::Key_4) {
        selectTab(SettingsTab(key - Qt::Key_1));
    } else if (isControl && (key == Qt::Key_Tab || key == Qt::Key_PageDown)) {
        selectNext(1);
    } else if (isControl && (key == Qt::Key_Backtab || key == Qt::Key_PageUp)) {
        selectNext(-1);
    } else if (event.modifiers() == Qt::NoModifier && hasFocus() &&
               (key == Qt::Key_Left || key == Qt::Key_Right)) {
        selectNext(key == Qt::Key_Right ? 1 : -1);
    } else {
        return false;
    }
    return true;
}

void SettingsView::selectNext(int step) {
    const int count = int(allCases<SettingsTab>().size());
    selectTab(SettingsTab((std::to_underlying(m_selectedTab) + step + count) % count));
}

void SettingsView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(0, m_tabs->height(), width(), kDivider, lookOf(*this).divider);
}

}  // namespace quillo
