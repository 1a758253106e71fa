// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

#include "base/all_cases.h"

class QButtonGroup;

namespace quillo {

/// The pages of the settings window, in the order of their tabs.
enum class SettingsTab { General, Capture, Appearance, Privacy };

template <>
[[nodiscard]] std::span<const SettingsTab> allCases<SettingsTab>();

/// "general" and so on.
[[nodiscard]] QString rawValue(SettingsTab tab);
[[nodiscard]] QString title(SettingsTab tab);
[[nodiscard]] QString symbol(SettingsTab tab);

/// A tab for each page, a symbol above its title. The arrow keys walk along them.
class SettingsTabBar final : public QWidget {
    Q_OBJECT

public:
    explicit SettingsTabBar(QWidget* parent = nullptr);

    /// Sends no signal.
    void setSelectedTab(SettingsTab tab);
    void focusSelected();

Q_SIGNALS:
    void chosen(SettingsTab tab);

private:
    QButtonGroup* m_group;
};

}  // namespace quillo
