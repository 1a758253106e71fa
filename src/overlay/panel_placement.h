// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointF>
#include <QRect>
#include <optional>

#include "appearance/panel_position.h"
#include "platform/user_defaults.h"

class QScreen;

namespace quillo {

/// Where the panel stands: the chosen edge, a place it was dragged to, and whether it can be
/// dragged. Kept in the settings, and taken over from them when they are edited by hand. Main
/// thread.
class PanelPlacement final : public QObject {
    Q_OBJECT

public:
    /// The settings must outlive this.
    explicit PanelPlacement(UserDefaults& defaults, QObject* parent = nullptr);

    [[nodiscard]] PanelPosition position() const { return m_position; }
    [[nodiscard]] bool isLocked() const { return m_isLocked; }
    /// Wins over the position.
    [[nodiscard]] std::optional<QPointF> customOrigin() const { return m_customOrigin; }

    /// Forgets the dragged place too.
    void setPosition(PanelPosition position);
    void setLocked(bool isLocked);
    void setCustomOrigin(std::optional<QPointF> origin);

    /// The panel's frame on a screen; a place that is off every screen gives the nearest on one.
    [[nodiscard]] QRect frameOn(const QScreen& screen, int width) const;

Q_SIGNALS:
    void positionChanged();
    void lockedChanged();
    void customOriginChanged();

private:
    void settingEdited(const QString& key);
    void storeCustomOrigin();

    UserDefaults& m_defaults;
    PanelPosition m_position;
    bool m_isLocked;
    std::optional<QPointF> m_customOrigin;
    bool m_isWriting = false;  ///< What changes now in the settings is ours.
};

/// The screen that most of a window lies on, its frame in the display server's pixels; none when
/// it lies on none.
[[nodiscard]] QScreen* screenOfNativeFrame(const QRect& frame);

}  // namespace quillo
