// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace quillo {

/// A text in a form or a window, in one of a few styles; its colours are those of its palette.
class FormLabel final : public QLabel {
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

    explicit FormLabel(Style style, const QString& text = {}, QWidget* parent = nullptr);

    void setStyle(Style style);
};

}  // namespace quillo
