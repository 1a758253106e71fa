// SPDX-License-Identifier: MIT
#include "model/store/store_opening.h"

#include <QFile>
#include <QUuid>

#include "base/logging.h"
#include "model/store/derived_attributes.h"
#include "model/store/store_files.h"
#include "model/store/store_migrations.h"
#include "model/store/store_schema.h"
#include "model/store/store_transaction.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcController, "PersistenceController")

constexpr auto kOpeningTimeout = 50ms;  // Another process's start or end, not its stay.
constexpr auto kWorkingTimeout = 2s;

// Temporary tables and sorts stay in memory, so that no clip's text reaches a file of theirs. The
// bound on pages keeps page numbers below 2^24: PageScrubber tells pages apart by that.
constexpr auto kSettings =
    "PRAGMA foreign_keys = ON; PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY; "
    "PRAGMA trusted_schema = OFF;";
constexpr qint64 kMaxPages = 0x00ffffff;

Result<std::unique_ptr<SqliteDatabase>> connect(const QByteArray& address, qint64 maxPages) {
    auto database = SqliteDatabase::open(address);
    if (!database) {
        return database;
    }
    if ((*database)->isReadOnly()) {
        return failure(ErrorKind::NotPermitted, u"The store may not be written."_s);
    }
    (*database)->setBusyTimeout(kOpeningTimeout);
    (*database)->setCheckpointOnClose(false);
    if (auto done = (*database)->execute(kSettings); !done) {
        return std::unexpected(done.error());
    }
    const QByteArray bound =
        "PRAGMA max_page_count = " + QByteArray::number(maxPages > 0 ? maxPages : kMaxPages);
    if (auto done = (*database)->execute(bound); !done) {
        return std::unexpected(done.error());
    }
    return database;
}

// A program whose rules differ computes what they give anew.
Result<void> applyRules(SqliteDatabase& database) {
    const auto stale = isDerivedStale(database);
    if (!stale || !*stale) {
        return stale ? Result<void>() : std::unexpected(stale.error());
    }
    StoreTransaction transaction(database);
    if (auto begun = transaction.begin(); !begun) {
        return begun;
    }
    if (auto done = refreshDerived(database); !done) {
        return done;
    }
    return transaction.commit();
}

// The version and the tables are looked at before anything is written: a newer store and a file
// of another program stay as they are.
Result<void> makeReady(SqliteDatabase& database) {
    const auto steps = storeMigrations();
    const int newest = steps.back().version;
    const auto version = readableVersion(database, newest);
    if (!version) {
        return std::unexpected(version.error());
    }
    if (*version == newest) {
        if (auto done = checkSchema(database); !done) {
            return done;
        }
        if (auto done = database.execute("PRAGMA journal_mode = WAL"); !done) {
            return done;
        }
        return applyRules(database);
    }
    if (*version > 0) {
        if (auto done = checkIsStore(database); !done) {
            return done;
        }
    }
    if (auto done = database.execute("PRAGMA journal_mode = WAL"); !done) {
        return done;
    }
    if (auto done = migrate(database, steps); !done) {
        return done;
    }
    if (auto done = checkSchema(database); !done) {
        return done;
    }
    return applyRules(database);
}

Result<void> beginWork(SqliteDatabase& database, const QByteArray& synchronous) {
    database.setBusyTimeout(kWorkingTimeout);
    database.setCheckpointOnClose(true);
    return database.execute("PRAGMA synchronous = " + synchronous);
}

Result<StoreConnections> openAt(const QByteArray& address, qint64 maxPages) {
    StoreConnections connections{.writer = {}, .view = {}, .address = address};
    auto writer = connect(address, maxPages);
    if (!writer) {
        return std::unexpected(writer.error());
    }
    if (auto ready = makeReady(**writer); !ready) {
        return std::unexpected(ready.error());
    }
    auto view = connect(address, maxPages);
    if (!view) {
        return std::unexpected(view.error());
    }
    connections.writer = std::move(*writer);
    connections.view = std::move(*view);
    if (auto done = beginWork(*connections.writer, "FULL"); !done) {
        return std::unexpected(done.error());
    }
    if (auto done = beginWork(*connections.view, "NORMAL"); !done) {
        return std::unexpected(done.error());
    }
    return connections;
}

}  // namespace

Result<StoreConnections> openStore(const StoreLocation& location) {
    if (location.file.isEmpty()) {
        const QByteArray name = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
        return openAt("file:/quillo-" + name + "?vfs=memdb", location.maxPages);
    }
    if (auto prepared = prepareStoreFile(location.file); !prepared) {
        return std::unexpected(prepared.error());
    }
    return openAt(QFile::encodeName(location.file), location.maxPages);
}

Result<std::unique_ptr<SqliteDatabase>> openReader(const QByteArray& address) {
    auto database = connect(address, 0);
    if (!database) {
        return database;
    }
    (*database)->setBusyTimeout(kWorkingTimeout);
    if (auto done = (*database)->execute("PRAGMA query_only = ON"); !done) {
        return std::unexpected(done.error());
    }
    return database;
}

LoadedStore loadStore(const StoreLocation& location, Timestamp now, ErrorKind* lastLogged) {
    LoadedStore loaded{openStore(location)};
    if (loaded.connections) {
        qCInfo(lcController, "Core Data store loaded successfully");
        return loaded;
    }
    const Error error = loaded.connections.error();
    if (lastLogged == nullptr || *lastLogged != error.kind) {
        qCCritical(lcController, "Core Data load error: %s", qUtf8Printable(error.text));
    }
    if (lastLogged != nullptr) {
        *lastLogged = error.kind;
    }
    if (error.kind != ErrorKind::Malformed) {
        return loaded;
    }
    qCInfo(lcController, "Attempting to recover by deleting old store...");
    const auto aside = setStoreAside(location.file, now);
    loaded.connections = aside ? openStore(location) : std::unexpected(aside.error());
    if (loaded.connections) {
        qCInfo(lcController, "Core Data store recovered successfully (old data cleared)");
        return loaded;
    }
    loaded.recoveryFailed = true;
    qCCritical(lcController, "Core Data retry failed: %s",
               qUtf8Printable(loaded.connections.error().text));
    return loaded;
}

}  // namespace quillo
