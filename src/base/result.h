// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <utility>

#include "base/error.h"

namespace quillo {

/// The result of what can fail: a value or an Error.
template <typename T>
using Result = std::expected<T, Error>;

/// Makes the failing half of a Result.
[[nodiscard]] inline std::unexpected<Error> failure(ErrorKind kind, QString text) {
    return std::unexpected<Error>(Error{kind, std::move(text)});
}

}  // namespace quillo
