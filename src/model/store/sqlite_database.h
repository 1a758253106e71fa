// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUuid>
#include <chrono>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

#include "base/result.h"
#include "model/store/object_model.h"
#include "model/store/page_scrubber.h"

namespace SQLite {
class Database;
class Statement;
}  // namespace SQLite

namespace quillo {

class SqliteDatabase;

/// A prepared statement in use; it goes back to its connection's cache when it is destroyed.
class SqliteStatement final {
public:
    SqliteStatement(SqliteStatement&& other) noexcept;
    SqliteStatement& operator=(SqliteStatement&&) = delete;
    ~SqliteStatement();

    /// Positions start at 1. A value that cannot be bound makes the next step fail.
    void bind(int position, const Value& value);
    void bind(int position, const QUuid& key) { bind(position, Value(key.toRfc4122())); }

    /// True when there is a row, false at the end.
    [[nodiscard]] Result<bool> step();

    // Columns start at 0; a value of another type than asked for is absent.
    [[nodiscard]] Value value(int column, AttributeType type) const;
    [[nodiscard]] qint64 integer(int column) const;
    [[nodiscard]] QUuid uuid(int column) const;

private:
    friend class SqliteDatabase;
    struct Entry;

    SqliteStatement(SqliteDatabase& database, std::shared_ptr<Entry> entry);

    SqliteDatabase* m_database;
    std::shared_ptr<Entry> m_entry;
    std::deque<std::string> m_texts;  // What is bound without a copy must stay in place.
    std::deque<QByteArray> m_bytes;
    bool m_bindFailed = false;
};

/// One connection to a database: statements are prepared once, failures are values. Used by one
/// thread at a time.
class SqliteDatabase final {
public:
    /// Opens an existing file or a "file:" address for reading and writing.
    [[nodiscard]] static Result<std::unique_ptr<SqliteDatabase>> open(const QByteArray& address);
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    /// Runs one or more statements without results.
    [[nodiscard]] Result<void> execute(const QByteArray& sql);
    [[nodiscard]] Result<SqliteStatement> prepare(const QByteArray& sql);
    /// Runs one statement to its end; the count of changed rows.
    [[nodiscard]] Result<qint64> run(const QByteArray& sql, const QList<Value>& bindings);
    /// The first column of the first row; 0 when there is none.
    [[nodiscard]] Result<qint64> queryInteger(const QByteArray& sql,
                                              const QList<Value>& bindings = {});

    void setBusyTimeout(std::chrono::milliseconds timeout);
    /// Whether closing the last connection copies the log into the file.
    void setCheckpointOnClose(bool enabled);
    /// Copies the write-ahead log into the file and empties it; Busy while somebody reads.
    [[nodiscard]] Result<void> truncateLog();

    [[nodiscard]] bool isReadOnly() const;
    [[nodiscard]] bool inTransaction() const;
    /// Whether the latest failure lies in the values of one row and not in the store.
    [[nodiscard]] bool latestFailureIsOfOneRow() const;

private:
    friend class SqliteStatement;
    explicit SqliteDatabase(std::unique_ptr<SQLite::Database> database);

    [[nodiscard]] Error latestError() const;

    PageScrubber m_scrubber;  // Outlives the connection.
    std::unique_ptr<SQLite::Database> m_database;
    std::unordered_map<std::string, std::shared_ptr<SqliteStatement::Entry>> m_cache;
    int m_latestFailure = 0;
};

}  // namespace quillo
