// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "appearance/panel_position.h"

namespace quillo {

/// What a settings page can do about the place of the overlay's panel. Main thread.
class PanelPositionControl : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual PanelPosition panelPosition() const = 0;
    [[nodiscard]] virtual bool isPositionLocked() const = 0;

    virtual void setPanelPosition(PanelPosition position) = 0;
    /// Forgets a dragged place.
    virtual void resetToDefaultPosition() = 0;
    virtual void setPositionLocked(bool isLocked) = 0;

Q_SIGNALS:
    void panelPositionChanged();
    void positionLockedChanged();
    void customOriginChanged();
};

}  // namespace quillo
