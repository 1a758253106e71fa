// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

#include "model/persistence_controller.h"

namespace quillo {

/// Deletes every clip on the store's thread, after what was captured so far, and then what is left
/// of them in files; groups stay. Returns at once. done runs on the main thread as soon as the
/// clips are gone, or with an error when none is; not at all when the context object is gone by
/// then. Main thread. The persistence must live until done has run.
void deleteHistory(PersistenceController& persistence, QObject& context,
                   std::function<void(Result<void>)> done);

}  // namespace quillo
