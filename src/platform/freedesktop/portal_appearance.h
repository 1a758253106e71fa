// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>
#include <memory>

#include "platform/system_appearance.h"

namespace quillo {

/// The colour scheme of the desktop portal: namespace org.freedesktop.appearance, key
/// color-scheme of the interface org.freedesktop.portal.Settings (XDG Desktop Portal). A thread
/// of its own talks to the session bus, because connecting waits; it sleeps until the setting
/// changes or the portal comes anew. Without a session bus or a portal there is no scheme.
class PortalAppearance final : public SystemAppearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QObject* parent = nullptr);
    ~PortalAppearance() override;

    [[nodiscard]] std::optional<ColorScheme> colorScheme() const override { return m_scheme; }

private:
    void receive(uint value);

    QThread m_thread;
    std::optional<ColorScheme> m_scheme;
};

/// What a value of color-scheme says: 1 dark, 2 light; 0 and values of the future nothing.
[[nodiscard]] std::optional<ColorScheme> colorSchemeFromPortal(uint value);

}  // namespace quillo
