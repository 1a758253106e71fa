// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "base/result.h"
#include "base/unique_fd.h"

namespace quillo {

/// Holds the right to be the one running program of a person's session. The lock ends with the
/// process, however it ends.
class InstanceLock final {
public:
    /// Busy when another process holds the lock. The folder is made when it is missing.
    [[nodiscard]] static Result<InstanceLock> acquire(const QString& folder);

private:
    explicit InstanceLock(UniqueFd file) : m_file(std::move(file)) {}

    UniqueFd m_file;
};

}  // namespace quillo
