// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <atomic>

namespace quillo::testing {

enum class DiskOperation { Open, Read, Write, Sync, Truncate, Lock, MapShared, LockShared };

/// A disk that fails on demand: SQLite's file layer (https://sqlite.org/vfs.html), through which
/// every database opened while it lives goes. One operation fails and the next ones work again.
/// Syncing never waits for the disk.
class FailingVfs final {
public:
    FailingVfs();
    ~FailingVfs();
    FailingVfs(const FailingVfs&) = delete;
    FailingVfs& operator=(const FailingVfs&) = delete;

    /// The nth operation of that kind from now on answers with that code of SQLite.
    void failAt(DiskOperation operation, int nth, int code);
    [[nodiscard]] bool hasFailed() const { return m_remaining <= 0; }
    void repair() { m_operation = -1; }

    /// SQLITE_OK, or the code to fail with. Used by the files.
    [[nodiscard]] int meet(DiskOperation operation);

private:
    static int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* out);

    sqlite3_vfs* m_real;
    sqlite3_vfs m_vfs;
    std::atomic<int> m_operation = -1;
    std::atomic<int> m_remaining = 1;
    std::atomic<int> m_code = SQLITE_IOERR;
};

}  // namespace quillo::testing
