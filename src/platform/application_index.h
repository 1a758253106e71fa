// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/workspace.h"

namespace quillo {

/// What a window tells of the program that it belongs to.
struct ProgramTraces {
    QString windowClass;       ///< WM_CLASS class, or the app id of Wayland.
    QString windowInstance;    ///< WM_CLASS instance; empty on Wayland.
    QString gtkApplicationId;  ///< _GTK_APPLICATION_ID; empty when not set.
    qint64 processId = 0;      ///< 0 when unknown.
};

/// The installed programs, and which of them a window belongs to. Thread-safe. Shared by the back
/// ends that see windows.
class ApplicationIndex {
public:
    virtual ~ApplicationIndex() = default;

    /// None when no installed program fits.
    [[nodiscard]] virtual std::optional<InstalledApplication> applicationOfWindow(
        const ProgramTraces& traces) = 0;

    /// None when no such program is installed.
    [[nodiscard]] virtual std::optional<InstalledApplication> application(
        const QString& bundleIdentifier) = 0;
};

}  // namespace quillo
