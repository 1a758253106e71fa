// SPDX-License-Identifier: MIT
#pragma once

#include "model/persistence_controller.h"

namespace quillo::testing {

/// How a test opens a store that leaves nothing on the disk. The clock must outlive the store.
[[nodiscard]] inline PersistenceController::Options inMemory(const Clock& clock) {
    PersistenceController::Options options;
    options.kind = StoreKind::InMemory;
    options.clock = &clock;
    return options;
}

}  // namespace quillo::testing
