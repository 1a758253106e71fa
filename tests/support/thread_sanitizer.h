// SPDX-License-Identifier: MIT
#pragma once

namespace quillo::testing {

/// Does nothing; the call has what the thread sanitizer is told linked into the executable.
void linkThreadSanitizerSupport();

}  // namespace quillo::testing
