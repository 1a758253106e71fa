// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/settings_page.h"

namespace quillo {

/// What the session lets a program do differs between the two.
enum class DesktopSession { X11, Wayland };

/// The session that the program runs in; under Wayland it reaches X11 programs by Xwayland.
[[nodiscard]] DesktopSession desktopSession();

/// Where the data are, what the program needs of the desktop, and who made it. Changes nothing.
class PrivacyPage final : public SettingsPage {
    Q_OBJECT

public:
    /// storePath may be empty.
    PrivacyPage(DesktopSession session, const QString& storePath, QWidget* parent = nullptr);
};

}  // namespace quillo
