// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "platform/login_item.h"

namespace quillo {

/// The login item as an entry of the desktop's autostart (freedesktop Desktop Application Autostart
/// Specification). An entry that the desktop passes over (Hidden, X-GNOME-Autostart-enabled=false,
/// or what is no entry) is not registered; one that starts the program from another path is.
class AutostartLoginItem final : public LoginItem {
public:
    /// The entry under the XDG config home, for the running program.
    AutostartLoginItem();
    AutostartLoginItem(QString entryPath, QString program);

    [[nodiscard]] bool isRegistered() const override;
    /// Replaces the entry in one step.
    [[nodiscard]] Result<void> registerItem() override;
    [[nodiscard]] Result<void> unregisterItem() override;

private:
    QString m_entryPath;
    QString m_program;
};

/// A program's path as it stands in an Exec key (Desktop Entry Specification 1.5, "The Exec key"):
/// quoted where it has to be, without field codes, escaped like every string of an entry.
[[nodiscard]] QByteArray execValue(const QString& program);

}  // namespace quillo
