// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUuid>
#include <functional>

#include "model/store/object_model.h"

namespace quillo {

class PersistenceController;

/// Loads a heavy attribute of a clip (its image, its link's image, its document); empty when there
/// is none. Called on a worker; may block.
using ClipBytesLoader = std::function<QByteArray(const QUuid& clip, ClipAttribute attribute)>;

/// Loads from the store without waiting for the captures. The controller must outlive the
/// loader's calls.
[[nodiscard]] ClipBytesLoader storedBytesLoader(PersistenceController& persistence);

}  // namespace quillo
