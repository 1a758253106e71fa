// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "base/clock.h"
#include "base/result.h"
#include "model/store/sqlite_database.h"

namespace quillo {

/// Where a store lies: in a file, or in memory when there is none.
struct StoreLocation {
    QString file;
    qint64 maxPages = 0;  ///< Bounds the size, as a full disk would; 0 is no bound.
};

/// The store's two connections: one writes from the store's own thread and waits for the disk at
/// each commit, the other belongs to the main thread.
struct StoreConnections {
    std::unique_ptr<SqliteDatabase> writer;
    std::unique_ptr<SqliteDatabase> view;
    QByteArray address;  ///< What openReader() takes.
};

/// Opens or creates the store, brings its schema up to date and checks it; a few milliseconds at
/// any size. Malformed for a file that is no usable store; that file and a newer one are left as
/// they are.
[[nodiscard]] Result<StoreConnections> openStore(const StoreLocation& location);

/// A further connection to an open store that cannot write, for a short stay on any thread.
[[nodiscard]] Result<std::unique_ptr<SqliteDatabase>> openReader(const QByteArray& address);

struct LoadedStore {
    Result<StoreConnections> connections;
    bool recoveryFailed = false;
};

/// openStore, and where the file is no usable store, once more after setting it aside. Logs what
/// happened; a failure of the kind that was logged last is not logged again.
[[nodiscard]] LoadedStore loadStore(const StoreLocation& location, Timestamp now,
                                    ErrorKind* lastLogged = nullptr);

}  // namespace quillo
