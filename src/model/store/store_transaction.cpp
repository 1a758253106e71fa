// SPDX-License-Identifier: MIT
#include "model/store/store_transaction.h"

#include "model/store/sqlite_database.h"

using namespace Qt::StringLiterals;

namespace quillo {

StoreTransaction::StoreTransaction(SqliteDatabase& database) : m_database(database) {}

StoreTransaction::~StoreTransaction() {
    if (m_isOpen) {
        undo();
    }
}

Result<void> StoreTransaction::begin() {
    m_isNested = m_database.inTransaction();
    auto begun = m_database.execute(m_isNested ? "SAVEPOINT nested" : "BEGIN IMMEDIATE");
    m_isOpen = begun.has_value();
    return begun;
}

Result<void> StoreTransaction::commit() {
    // A full disk or a damaged page can make SQLite undo the whole transaction by itself.
    if (!m_database.inTransaction()) {
        m_isOpen = false;
        return failure(ErrorKind::Failed, u"The transaction was undone by an earlier failure."_s);
    }
    auto done = m_database.execute(m_isNested ? "RELEASE nested" : "COMMIT");
    if (done) {
        m_isOpen = false;
    }
    return done;
}

void StoreTransaction::undo() {
    m_isOpen = false;
    if (m_database.inTransaction()) {
        // What fails here has been undone by SQLite itself.
        (void)m_database.execute(m_isNested ? "ROLLBACK TO nested; RELEASE nested" : "ROLLBACK");
    }
}

}  // namespace quillo
