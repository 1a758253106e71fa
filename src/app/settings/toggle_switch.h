// SPDX-License-Identifier: MIT
#pragma once

#include "library/groups/panel_button.h"

namespace quillo {

/// An on-off switch. A press by pointer or key turns it and sends toggledByPerson(); setChecked()
/// sends nothing of the kind.
class ToggleSwitch final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kRoom = 3;  ///< Around the track, for the focus ring.

    /// The name is for screen readers.
    explicit ToggleSwitch(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void toggledByPerson(bool isOn);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillo
