// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/login_item.h"

namespace quillo::testing {

/// A login item in memory, whose changes fail where the test says so.
class FakeLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isRegistered() const override { return m_isRegistered; }
    [[nodiscard]] Result<void> registerItem() override { return change(true); }
    [[nodiscard]] Result<void> unregisterItem() override { return change(false); }

    /// From here on every change fails with it; none lets them succeed again.
    void setError(std::optional<Error> error) { m_error = std::move(error); }

private:
    Result<void> change(bool isRegistered) {
        if (m_error) {
            return std::unexpected(*m_error);
        }
        m_isRegistered = isRegistered;
        return {};
    }

    bool m_isRegistered = false;
    std::optional<Error> m_error;
};

}  // namespace quillo::testing
