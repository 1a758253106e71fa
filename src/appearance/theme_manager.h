// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "appearance/app_theme.h"
#include "platform/system_appearance.h"
#include "platform/user_defaults.h"

namespace quillo {

/// Holds the person's choice of light or dark, keeps it in the settings, and gives the application
/// and thereby every window the colours for it. Follows an edit of the settings by hand and, where
/// the choice is Auto, the desktop. Main thread.
class ThemeManager final : public QObject {
    Q_OBJECT

public:
    /// Reads the choice and changes nothing yet. Both must outlive the manager; needs the
    /// application object.
    ThemeManager(UserDefaults& defaults, const SystemAppearance& system, QObject* parent = nullptr);

    [[nodiscard]] AppTheme currentTheme() const { return m_currentTheme; }
    /// Stores the choice and applies it.
    void setCurrentTheme(AppTheme theme);

    /// Puts the choice in force: a palette of our own where it differs from what the platform
    /// shows by itself, else the platform's.
    void applyTheme();

    /// What Auto comes to at present: what the desktop states, else whether the platform's own
    /// palette is light or dark.
    [[nodiscard]] ColorScheme effectiveScheme() const { return m_effectiveScheme; }

Q_SIGNALS:
    /// The choice is another one; the effective scheme is already up to date.
    void currentThemeChanged();
    void effectiveSchemeChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void change(AppTheme theme);
    [[nodiscard]] ColorScheme usePaletteOf(std::optional<ColorScheme> scheme);

    UserDefaults& m_defaults;
    const SystemAppearance& m_system;
    AppTheme m_currentTheme;
    ColorScheme m_effectiveScheme;
    bool m_isApplying = false;
};

}  // namespace quillo
