// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/settings_section.h"
#include "app/settings/settings_services.h"
#include "base/result.h"

namespace quillo {

class PushButton;

/// The button of a row that deletes the whole history, after a question.
class DeleteHistorySetting final : public QObject {
    Q_OBJECT

public:
    /// Belongs to the row.
    DeleteHistorySetting(const SettingsServices& services, SettingsRow& row);

private:
    void ask();
    void deleteAll();
    void showEnd(const Result<void>& result);

    PersistenceController& m_persistence;
    SettingsRow& m_row;
    PushButton* m_button;
    FormLabel* m_trouble;
};

}  // namespace quillo
