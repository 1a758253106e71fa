// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <functional>
#include <optional>

#include "platform/key_event_poster.h"

namespace quillo::testing {

/// Records what is posted.
class FakeKeyEventPoster final : public KeyEventPoster {
public:
    [[nodiscard]] Result<void> postPaste(PasteKeys keys) override {
        if (m_error) {
            return std::unexpected(*m_error);
        }
        posted.append(keys);
        if (onPost) {
            onPost(keys);
        }
        return {};
    }

    /// Makes posting fail, or work again.
    void setError(std::optional<Error> error) { m_error = std::move(error); }

    QList<PasteKeys> posted;
    std::function<void(PasteKeys)> onPost;

private:
    std::optional<Error> m_error;
};

}  // namespace quillo::testing
