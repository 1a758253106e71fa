// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <array>

#include "app/settings/settings_services.h"
#include "app/settings/settings_tab_bar.h"

class QStackedWidget;

namespace quillo {

/// What the settings window shows: a bar of tabs and the page of the selected one. Pages are made
/// when they are first shown. Control-1 to 4, Control-Tab and the arrow keys change the tab, Escape
/// and Control-W close the window. Main thread.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(const SettingsServices& services, QWidget* parent = nullptr);

    [[nodiscard]] SettingsTab selectedTab() const { return m_selectedTab; }
    void selectTab(SettingsTab tab);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] QWidget* page(SettingsTab tab);
    [[nodiscard]] QWidget* makePage(SettingsTab tab);
    [[nodiscard]] bool selectByKey(const QKeyEvent& event);
    void selectNext(int step);
    void useScheme();

    SettingsServices m_services;
    SettingsTab m_selectedTab = SettingsTab::General;
    SettingsTabBar* m_tabs;
    QStackedWidget* m_pages;
    std::array<QWidget*, 4> m_made{};
};

}  // namespace quillo
