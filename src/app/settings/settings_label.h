// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace quillo {

/// A text of the settings window in one of its few styles; wraps and follows the window's colours.
class SettingsLabel final : public QLabel {
    Q_OBJECT

public:
    enum class Style {
        Title,    ///< 13 px, semi-bold.
        Text,     ///< 13 px.
        Caption,  ///< 11 px, secondary.
        Heading,  ///< 11 px, semi-bold, secondary: above a section.
        Success,  ///< 11 px, green.
        Status,   ///< 11 px, secondary; does not wrap.
        Trouble,  ///< 11 px, red.
    };

    explicit SettingsLabel(Style style, const QString& text = {}, QWidget* parent = nullptr);

    void setStyle(Style style);
};

}  // namespace quillo
