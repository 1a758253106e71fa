// SPDX-License-Identifier: MIT
#pragma once

#include "appearance/palette.h"
#include "library/groups/panel_button.h"

namespace quillo {

/// A flat button with a symbol and, if wanted, a label; lights up under the pointer and shows its
/// focus.
class BarButton final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kHeight = 28;

    explicit BarButton(const QString& symbol, QWidget* parent = nullptr);

    void setSymbol(const QString& symbol);
    void setColors(const Palette& colors);
    void setLabelShown(bool isShown);
    /// With and without the label.
    [[nodiscard]] int wantedWidth(bool withLabel) const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    Palette m_colors = paletteFor(ColorScheme::Light);
    bool m_isLabelShown = false;
};

}  // namespace quillo
