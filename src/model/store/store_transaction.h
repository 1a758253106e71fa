// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"

namespace quillo {

class SqliteDatabase;

/// An immediate transaction, or a savepoint inside one that is under way; undone by the
/// destructor unless it was committed. A savepoint keeps every page it changes in memory.
class StoreTransaction final {
public:
    explicit StoreTransaction(SqliteDatabase& database);
    ~StoreTransaction();
    StoreTransaction(const StoreTransaction&) = delete;
    StoreTransaction& operator=(const StoreTransaction&) = delete;

    [[nodiscard]] Result<void> begin();
    [[nodiscard]] Result<void> commit();

private:
    void undo();

    SqliteDatabase& m_database;
    bool m_isOpen = false;
    bool m_isNested = false;
};

}  // namespace quillo
