// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "library/groups/panel_button.h"
#include "library/groups/popup_look.h"

namespace quillo {

/// A round button of one colour; a white ring around the chosen one.
class Swatch final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kRing = 3;  ///< What is kept around the disc.

    Swatch(const QColor& color, const QString& name, int disc, QWidget* parent);

    [[nodiscard]] QColor color() const { return m_color; }
    void setLook(const PopupLook& look);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color;
    PopupLook m_look;
};

}  // namespace quillo
