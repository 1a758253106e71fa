// SPDX-License-Identifier: MIT
#include "model/store/sqlite_database.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "model/store/sqlite_error.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr size_t kMaxCachedStatements = 96;
// Within it any two moments can be subtracted.
constexpr qint64 kFarthestMoment = INT64_MAX / 2;

Error errorFromException(const SQLite::Exception& exception) {
    return {errorKindFromSqlite(exception.getExtendedErrorCode(), 0),
            QString::fromUtf8(exception.what()) +
                u" (SQLite %1)"_s.arg(exception.getExtendedErrorCode())};
}

Value momentFrom(qint64 microseconds) {
    const bool isMoment = microseconds >= -kFarthestMoment && microseconds <= kFarthestMoment;
    return isMoment ? Value(Timestamp{std::chrono::microseconds(microseconds)}) : Value();
}

}  // namespace

struct SqliteStatement::Entry {
    SQLite::Statement statement;
    bool isInUse = false;
};

// --- The statement.

SqliteStatement::SqliteStatement(SqliteDatabase& database, std::shared_ptr<Entry> entry)
    : m_database(&database), m_entry(std::move(entry)) {
    m_entry->isInUse = true;
}

SqliteStatement::SqliteStatement(SqliteStatement&& other) noexcept = default;

SqliteStatement::~SqliteStatement() {
    if (m_entry == nullptr) {
        return;
    }
    m_entry->statement.tryReset();
    try {
        m_entry->statement.clearBindings();
    } catch (const SQLite::Exception&) {  // NOLINT(bugprone-empty-catch)
        // Clearing cannot fail on a statement that was reset.
    }
    m_entry->isInUse = false;
}

void SqliteStatement::bind(int position, const Value& value) {
    SQLite::Statement& statement = m_entry->statement;
    try {
        if (const auto* integer = std::get_if<qint64>(&value)) {
            statement.bind(position, int64_t{*integer});
        } else if (const auto* real = std::get_if<double>(&value)) {
            statement.bind(position, *real);
        } else if (const auto* text = std::get_if<QString>(&value)) {
            statement.bindNoCopy(position, m_texts.emplace_back(text->toStdString()));
        } else if (const auto* bytes = std::get_if<QByteArray>(&value)) {
            const QByteArray& kept = m_bytes.emplace_back(*bytes);
            statement.bindNoCopy(position, kept.constData(), int(kept.size()));
        } else if (const auto* moment = std::get_if<Timestamp>(&value)) {
            statement.bind(position, int64_t{moment->time_since_epoch().count()});
        } else {
            statement.bind(position);
        }
    } catch (const SQLite::Exception&) {
        m_bindFailed = true;
        m_database->m_latestFailure = sqlite3_extended_errcode(m_database->m_database->getHandle());
    }
}

Result<bool> SqliteStatement::step() {
    if (m_bindFailed) {
        return std::unexpected(m_database->latestError());
    }
    const int code = m_entry->statement.tryExecuteStep();
    if (code == SQLITE_ROW || code == SQLITE_DONE) {
        return code == SQLITE_ROW;
    }
    m_database->m_latestFailure = sqlite3_extended_errcode(m_database->m_database->getHandle());
    return std::unexpected(m_database->latestError());
}

Value SqliteStatement::value(int column, AttributeType type) const {
    const SQLite::Column cell = m_entry->statement.getColumn(column);
    switch (type) {
        case AttributeType::Integer:
        case AttributeType::Boolean:
            return cell.isInteger() ? Value(qint64{cell.getInt64()}) : Value();
        case AttributeType::Real:
            return cell.isFloat() || cell.isInteger() ? Value(cell.getDouble()) : Value();
        case AttributeType::Text:
            return cell.isText() ? Value(QString::fromUtf8(cell.getText(), cell.getBytes()))
                                 : Value();
        case AttributeType::Bytes:
            // An empty blob's address is null, and is present all the same.
            return cell.isBlob() ? Value(cell.getBytes() == 0
                                             ? QByteArray("")
                                             : QByteArray(static_cast<const char*>(cell.getBlob()),
                                                          cell.getBytes()))
                                 : Value();
        case AttributeType::Moment:
            return cell.isInteger() ? momentFrom(cell.getInt64()) : Value();
    }
    return {};
}

qint64 SqliteStatement::integer(int column) const {
    return m_entry->statement.getColumn(column).getInt64();
}

QUuid SqliteStatement::uuid(int column) const {
    const SQLite::Column cell = m_entry->statement.getColumn(column);
    return QUuid::fromRfc4122(
        QByteArrayView(static_cast<const char*>(cell.getBlob()), cell.getBytes()));
}

// --- The connection.

Result<std::unique_ptr<SqliteDatabase>> SqliteDatabase::open(const QByteArray& address) {
    const int flags = SQLite::OPEN_READWRITE | SQLite::OPEN_URI;
    try {
        return std::unique_ptr<SqliteDatabase>(
            new SqliteDatabase(std::make_unique<SQLite::Database>(address.constData(), flags)));
    } catch (const SQLite::Exception& exception) {
        return std::unexpected(errorFromException(exception));
    }
}

SqliteDatabase::SqliteDatabase(std::unique_ptr<SQLite::Database> database)
    : m_database(std::move(database)) {
    m_scrubber.attach(m_database->getHandle());
}

SqliteDatabase::~SqliteDatabase() {
    m_cache.clear();
}

Result<void> SqliteDatabase::execute(const QByteArray& sql) {
    if (m_database->tryExec(sql.constData()) != SQLITE_OK) {
        m_latestFailure = sqlite3_extended_errcode(m_database->getHandle());
        return std::unexpected(latestError());
    }
    return {};
}

Result<SqliteStatement> SqliteDatabase::prepare(const QByteArray& sql) {
    const std::string key = sql.toStdString();
    if (const auto found = m_cache.find(key); found != m_cache.end() && !found->second->isInUse) {
        return SqliteStatement(*this, found->second);
    }
    try {
        auto entry = std::make_shared<SqliteStatement::Entry>(
            SqliteStatement::Entry{SQLite::Statement(*m_database, key)});
        if (m_cache.size() >= kMaxCachedStatements) {
            m_cache.clear();
        }
        m_cache.insert_or_assign(key, entry);
        return SqliteStatement(*this, std::move(entry));
    } catch (const SQLite::Exception& exception) {
        m_latestFailure = exception.getExtendedErrorCode();
        return std::unexpected(latestError());
    }
}

Result<qint64> SqliteDatabase::run(const QByteArray& sql, const QList<Value>& bindings) {
    auto statement = prepare(sql);
    if (!statement) {
        return std::unexpected(statement.error());
    }
    for (int i = 0; i < bindings.size(); ++i) {
        statement->bind(i + 1, bindings[i]);
    }
    Result<bool> row = statement->step();
    while (row && *row) {
        row = statement->step();
    }
    if (!row) {
        return std::unexpected(row.error());
    }
    return m_database->getChanges();
}

Result<qint64> SqliteDatabase::queryInteger(const QByteArray& sql, const QList<Value>& bindings) {
    auto statement = prepare(sql);
    if (!statement) {
        return std::unexpected(statement.error());
    }
    for (int i = 0; i < bindings.size(); ++i) {
        statement->bind(i + 1, bindings[i]);
    }
    const Result<bool> row = statement->step();
    if (!row) {
        return std::unexpected(row.error());
    }
    return *row ? statement->integer(0) : 0;
}

void SqliteDatabase::setBusyTimeout(std::chrono::milliseconds timeout) {
    sqlite3_busy_timeout(m_database->getHandle(), int(timeout.count()));
}

void SqliteDatabase::setCheckpointOnClose(bool enabled) {
    sqlite3_db_config(m_database->getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, enabled ? 0 : 1,
                      nullptr);
}

Result<void> SqliteDatabase::truncateLog() {
    const int code = sqlite3_wal_checkpoint_v2(m_database->getHandle(), "main",
                                               SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    if (code != SQLITE_OK) {
        return std::unexpected(latestSqliteError(m_database->getHandle()));
    }
    return {};
}

bool SqliteDatabase::isReadOnly() const {
    return sqlite3_db_readonly(m_database->getHandle(), "main") == 1;
}

bool SqliteDatabase::inTransaction() const {
    return sqlite3_get_autocommit(m_database->getHandle()) == 0;
}

bool SqliteDatabase::latestFailureIsOfOneRow() const {
    return isFailureOfOneRow(m_latestFailure);
}

Error SqliteDatabase::latestError() const {
    return latestSqliteError(m_database->getHandle());
}

}  // namespace quillo
