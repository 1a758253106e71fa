// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "base/clock.h"
#include "base/result.h"

namespace quillo {

/// Makes the store's folder (0700) and its file (0600) where they are missing and takes other
/// people's rights away where they are not. An empty file is a fresh store. Malformed when
/// something that is no file is in its place, NotPermitted when it may not be read and written.
[[nodiscard]] Result<void> prepareStoreFile(const QString& file);

/// Moves the store's file and its side files into a dated folder next to it and keeps the last
/// three such folders. The folder's path.
[[nodiscard]] Result<QString> setStoreAside(const QString& file, Timestamp now);

/// The folders made by setStoreAside, oldest first.
[[nodiscard]] QStringList storesSetAside(const QString& file);

/// Removes every folder made by setStoreAside; false when something is left.
bool removeStoresSetAside(const QString& file);

}  // namespace quillo
