// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <chrono>
#include <optional>

#include "base/result.h"
#include "platform/application_service.h"

namespace quillo {

/// The program's name on the session bus and the identifier of its desktop entry.
inline constexpr QLatin1StringView kApplicationId{"com.quillohq.Quillo"};
inline constexpr QLatin1StringView kApplicationPath{"/com/quillohq/Quillo"};

/// The interface org.freedesktop.Application (Desktop Entry Specification, "D-Bus Activation"):
/// Activate shows the library, ActivateAction one of "overlay", "library" and "settings". Callers
/// are not trusted: an unknown action and a wrong argument are answered with an error.
class DBusApplicationService final : public ApplicationService {
    Q_OBJECT

public:
    explicit DBusApplicationService(QObject* parent = nullptr);
    ~DBusApplicationService() override;

    /// Offers the interface there under kApplicationId. A name that another process has is said in
    /// the log, and asked for no more.
    void offerOn(const QDBusConnection& bus);

private:
    std::optional<QDBusConnection> m_bus;
};

/// Calls Activate of the running program, for a second start. Waits for its answer, at most for
/// that time.
[[nodiscard]] Result<void> activateRunningApplication(std::chrono::milliseconds patience);

}  // namespace quillo
