// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "library/groups/panel_button.h"
#include "library/groups/sheet.h"

namespace quillo {

class ColorPicker;
class SwatchRow;

/// A button that shows a colour. Pressing it opens a sheet in which another is chosen.
class ColorWell final : public PanelButton {
    Q_OBJECT

public:
    /// What the colour is of, for the sheet's title and for screen readers.
    explicit ColorWell(const QString& name, QWidget* parent = nullptr);

    /// Sends no signal; an open sheet shows it too.
    void setColor(const QColor& color);
    [[nodiscard]] QColor color() const { return m_color; }

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// The person chose another; sent for every one that the pointer passes.
    void chosen(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openSheet();

    QColor m_color;
    QPointer<ColorPicker> m_picker;  ///< Of the open sheet, as are the swatches.
    QPointer<SwatchRow> m_swatches;
};

}  // namespace quillo
