// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <QString>
#include <optional>

#include "platform/user_defaults.h"

namespace quillo {

/// Remembers where windows were, in the settings under "windowFrame_" and the window's autosave
/// name, as "x y width height" of its content in logical pixels. Main thread.
class WindowFrames final {
public:
    /// defaults must outlive the object.
    explicit WindowFrames(UserDefaults& defaults) : m_defaults(defaults) {}

    /// None when nothing was stored and for a text that is no frame.
    [[nodiscard]] std::optional<QRect> stored(const QString& autosaveName) const;
    void store(const QString& autosaveName, const QRect& frame);

private:
    UserDefaults& m_defaults;
};

/// The largest screen area that a window may get from its settings, in logical pixels.
inline constexpr int kLargestFrameSide = 32000;

/// The frame with a size between the least one and what its screen can show, and moved as far as
/// it takes to be within the nearest of the screens' areas. screens is not empty.
[[nodiscard]] QRect visibleFrame(const QRect& frame, const QSize& least,
                                 const QList<QRect>& screens);

/// A frame of that size in the middle of the area.
[[nodiscard]] QRect centredFrame(const QSize& size, const QRect& area);

}  // namespace quillo
