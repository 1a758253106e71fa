// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

#include "library/groups/popup_look.h"
#include "platform/system_appearance.h"

class QWidget;

namespace quillo {

/// The colours of the settings window. Text reaches 4.5 : 1 on what it stands on.
struct SettingsLook {
    PopupLook controls;  ///< Of what stands on a section.
    QColor window;
    QColor divider;  ///< Below the tabs, between rows.
    QColor section;
    QColor sectionBorder;
    QColor track;    ///< Of sliders and of switches that are off.
    QColor success;  ///< "Running", "Enabled".
    QColor destructive;
    QColor link;
    QColor heading;  ///< Titles of sections, on the window.
};

[[nodiscard]] const SettingsLook& settingsLook(ColorScheme scheme);

/// Of what stands on a section, for sheets.
[[nodiscard]] PopupLook settingsControls(ColorScheme scheme);

/// The look of the scheme that the widget's palette has.
[[nodiscard]] const SettingsLook& lookOf(const QWidget& widget);

/// The colours in the roles that standard widgets draw with; labels take Secondary, Link and so
/// on as their foreground role (see form_label.h).
[[nodiscard]] QPalette settingsPalette(ColorScheme scheme);

/// Gives the form controls in a tree of widgets the look of the tree's palette. For what is added
/// to a window that is shown already, and for a change of the scheme.
void applySettingsLook(QWidget& root);

}  // namespace quillo
