// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system_appearance.h"

namespace quillo::testing {

/// A desktop that states what a test says.
class FakeSystemAppearance final : public SystemAppearance {
public:
    [[nodiscard]] std::optional<ColorScheme> colorScheme() const override { return m_scheme; }

    void state(std::optional<ColorScheme> scheme) {
        m_scheme = scheme;
        Q_EMIT colorSchemeChanged();
    }

private:
    std::optional<ColorScheme> m_scheme;
};

}  // namespace quillo::testing
