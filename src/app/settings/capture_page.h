// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/settings_page.h"
#include "app/settings/settings_services.h"

namespace quillo {

class SettingsRow;
class SettingsSection;

/// What is captured, how much of it is kept, and how a capture sounds.
class CapturePage final : public SettingsPage {
    Q_OBJECT

public:
    explicit CapturePage(const SettingsServices& services, QWidget* parent = nullptr);

private:
    [[nodiscard]] SettingsRow* limitRow();
    [[nodiscard]] SettingsSection* contentTypes();
    [[nodiscard]] SettingsRow* soundRow();
    [[nodiscard]] QWidget* volumeLine();
    [[nodiscard]] SettingsRow* badgeSizeRow();

    SettingsServices m_services;
};

}  // namespace quillo
