// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include "appearance/clip_type_color_manager.h"
#include "appearance/theme_manager.h"
#include "platform/user_defaults.h"

namespace quillo {

class OverlayPopups;
class OverlayView;

/// Draws the panel as settings and theme say, now and whenever they change. Main thread.
class PanelAppearance final : public QObject {
    Q_OBJECT

public:
    /// All of them must outlive this.
    PanelAppearance(ClipTypeColorManager& colors, const ThemeManager& theme,
                    const UserDefaults& defaults, QObject* parent = nullptr);

    /// From now on these are drawn; they may go at any time.
    void dress(OverlayView* view, OverlayPopups* popups, Backdrop backdrop);

private:
    void themeChanged();
    void updateLook();
    void updateImageBadges();

    ClipTypeColorManager& m_colors;
    const ThemeManager& m_theme;
    const UserDefaults& m_defaults;
    QPointer<OverlayView> m_view;
    QPointer<OverlayPopups> m_popups;
    Backdrop m_backdrop = Backdrop::Hidden;
};

}  // namespace quillo
