// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/clock.h"
#include "base/result.h"
#include "model/clip.h"

namespace quillo {

/// The rules by which a history grows: a repeated copy moves its clip to the front, and the
/// oldest clips beyond the limit go. Used on a background context.

enum class StoreOutcome { Inserted, Bumped };

/// Renews the two dates of the clip with that digest and saves it; null when there is none. An
/// error is logged and counts as none.
[[nodiscard]] std::shared_ptr<Clip> bumpDuplicate(ObjectContext& context, const QByteArray& digest,
                                                  const Clock& clock);

/// Looks the digest up and either renews the found clip's two dates or inserts a clip, fills it
/// with fill and saves it; both in one immediate transaction. The digest is set before fill runs.
/// An error in the look-up is logged and counts as not found. On failure the context is rolled
/// back; the caller logs it.
[[nodiscard]] Result<StoreOutcome> insertOrBump(ObjectContext& context, const QByteArray& digest,
                                                const Clock& clock,
                                                const std::function<void(Clip&)>& fill);

/// Deletes the clips beyond the newest `limit` by createdAt, without loading them. A limit below
/// 1 is none. Returns how many went.
[[nodiscard]] Result<qsizetype> enforceHistoryLimit(ObjectContext& context, qint64 limit);

}  // namespace quillo
