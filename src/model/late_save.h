// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"
#include "model/store/object_context.h"

namespace quillo {

/// Takes along what was held in memory while the store could not be opened: the clips oldest
/// first through the rule of duplicates, keeping their dates and ids, then the groups and tags
/// with their members, then the history limit (below 1 is none). May be called again after a
/// failure: what was saved already is skipped. A failure of the store ends it; a single record
/// that cannot be stored is logged and left out.
[[nodiscard]] Result<void> saveLate(ObjectContext& memory, ObjectContext& store,
                                    qint64 historyLimit);

}  // namespace quillo
