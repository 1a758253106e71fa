// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <optional>

namespace quillo {

enum class ColorScheme { Light, Dark };

/// Whether the person wants a light or a dark desktop, as the desktop itself states it. Main
/// thread; no call waits.
class SystemAppearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// None where the desktop states no preference, where nothing here can be asked, and until
    /// the answer has come.
    [[nodiscard]] virtual std::optional<ColorScheme> colorScheme() const = 0;

Q_SIGNALS:
    void colorSchemeChanged();
};

}  // namespace quillo
