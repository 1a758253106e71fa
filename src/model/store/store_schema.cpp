// SPDX-License-Identifier: MIT
#include "model/store/store_schema.h"

#include "model/store/derived_attributes.h"
#include "model/store/sqlite_database.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

struct Index {
    const char* name;
    const char* definition;
};

// Those by date hold the key and the mask too: listing the newest ids, filtered or not, walks the
// index alone, and a filter passes over a clip without touching its row.
constexpr Index kIndexes[] = {
    {"ClipByContentHash", "Clip(contentHash)"},
    {"ClipByCreatedAt", "Clip(createdAt DESC, id, filterMask)"},
    {"ClipByPinned", "Clip(isPinned DESC, createdAt DESC, id, filterMask)"},
    {"ClipById", "Clip(id, createdAt, filterMask)"},  // For the members of a group.
    {"TombstoneByMoment", "Tombstone(deletedAt)"},
};

QByteArray columnType(AttributeType type) {
    switch (type) {
        case AttributeType::Integer:
        case AttributeType::Boolean:
        case AttributeType::Moment:
            return "INTEGER";
        case AttributeType::Real:
            return "REAL";
        case AttributeType::Text:
            return "TEXT";
        case AttributeType::Bytes:
            return "BLOB";
    }
    return "BLOB";
}

QByteArray columns(const EntityDescription& entity, AttributeLoad load) {
    QByteArray sql;
    for (const int position : attributesOf(entity.entity, load)) {
        const AttributeDescription& attribute = entity.attributes[size_t(position)];
        sql += QByteArray(", ") + attribute.name + ' ' + columnType(attribute.type);
        sql += attribute.isOptional ? "" : " NOT NULL";
    }
    return sql;
}

QList<QByteArray> entityTables(const EntityDescription& entity) {
    const QByteArray name = entity.name;
    QList<QByteArray> statements = {"CREATE TABLE " + name + "(id BLOB PRIMARY KEY NOT NULL" +
                                    columns(entity, AttributeLoad::Light) + ") STRICT"};
    if (const QByteArray heavy = heavyTable(entity.entity); !heavy.isEmpty()) {
        statements += "CREATE TABLE " + heavy + "(id BLOB PRIMARY KEY NOT NULL REFERENCES " + name +
                      "(id) ON DELETE CASCADE" + columns(entity, AttributeLoad::Heavy) + ") STRICT";
    }
    return statements;
}

QList<QByteArray> relationshipTable(const RelationshipDescription& relationship) {
    const QByteArray name = relationship.table;
    return {"CREATE TABLE " + name +
                "(clip BLOB NOT NULL REFERENCES Clip(id) ON DELETE CASCADE, "
                "other BLOB NOT NULL REFERENCES " +
                describe(relationship.other).name +
                "(id) ON DELETE CASCADE, PRIMARY KEY(clip, other)) STRICT, WITHOUT ROWID",
            "CREATE INDEX " + name + "Inverse ON " + name + "(other, clip)"};
}

QByteArray ofEntity(const EntityDescription& entity) {
    return " WHERE entity = " + QByteArray::number(int(entity.entity));
}

QByteArray deletionCounter(const EntityDescription& entity) {
    const QByteArray name = entity.name;
    return "CREATE TRIGGER " + name + "Deleted AFTER DELETE ON " + name +
           " BEGIN UPDATE RowCount SET rows = rows - 1" + ofEntity(entity) + "; END";
}

// The count of an entity's rows is kept by triggers, because counting walks an index.
QList<QByteArray> rowCounter(const EntityDescription& entity) {
    const QByteArray name = entity.name;
    return {"INSERT INTO RowCount(entity, rows) VALUES(" + QByteArray::number(int(entity.entity)) +
                ", 0)",
            "CREATE TRIGGER " + name + "Inserted AFTER INSERT ON " + name +
                " BEGIN UPDATE RowCount SET rows = rows + 1" + ofEntity(entity) + "; END",
            deletionCounter(entity)};
}

QList<QByteArray> bookkeepingTables() {
    return {
        "CREATE TABLE RowCount(entity INTEGER PRIMARY KEY, rows INTEGER NOT NULL) STRICT",
        "CREATE TABLE ChangeLog(number INTEGER PRIMARY KEY, entity INTEGER NOT NULL, "
        "id BLOB NOT NULL, change INTEGER NOT NULL, attributes TEXT NOT NULL) STRICT",
        "CREATE TABLE Tombstone(id BLOB PRIMARY KEY NOT NULL, entity INTEGER NOT NULL, "
        "deletedAt INTEGER NOT NULL) STRICT, WITHOUT ROWID",
    };
}

QByteArray probe(const QByteArray& table, const EntityDescription& entity, AttributeLoad load) {
    QByteArray sql = "SELECT id";
    for (const int position : attributesOf(entity.entity, load)) {
        sql += QByteArray(", ") + entity.attributes[size_t(position)].name;
    }
    return sql + " FROM " + table + " LIMIT 1";
}

QList<QByteArray> probes() {
    QList<QByteArray> sql = {
        "SELECT id FROM Clip ORDER BY createdAt DESC, id LIMIT 1",
        "SELECT number, entity, id, change, attributes FROM ChangeLog ORDER BY number DESC LIMIT 1",
        "SELECT id, entity, deletedAt FROM Tombstone LIMIT 1", "SELECT entity, rows FROM RowCount",
        "SELECT attribute, ruleVersion FROM Derivation"};
    for (const EntityDescription& entity : objectModel()) {
        sql += probe(entity.name, entity, AttributeLoad::Light);
        if (const QByteArray heavy = heavyTable(entity.entity); !heavy.isEmpty()) {
            sql += probe(heavy, entity, AttributeLoad::Heavy);
        }
    }
    for (const RelationshipDescription& relationship : relationshipModel()) {
        sql += "SELECT clip, other FROM " + QByteArray(relationship.table) + " LIMIT 1";
    }
    return sql;
}

Result<void> runProbes(SqliteDatabase& database, const QList<QByteArray>& statements) {
    for (const QByteArray& sql : statements) {
        auto statement = database.prepare(sql);
        if (!statement) {
            const Error& error = statement.error();
            return failure(error.kind == ErrorKind::Failed ? ErrorKind::Malformed : error.kind,
                           u"The store's tables are not the expected ones: "_s + error.text);
        }
        if (const auto row = statement->step(); !row) {
            return std::unexpected(row.error());
        }
    }
    return {};
}

}  // namespace

QByteArray heavyTable(Entity entity) {
    return attributesOf(entity, AttributeLoad::Heavy).isEmpty()
               ? QByteArray()
               : QByteArray(describe(entity).name) + "Heavy";
}

QList<int> attributesOf(Entity entity, AttributeLoad load) {
    QList<int> positions;
    const auto attributes = describe(entity).attributes;
    for (size_t i = 0; i < attributes.size(); ++i) {
        if (attributes[i].load == load) {
            positions.append(int(i));
        }
    }
    return positions;
}

QList<QByteArray> schemaStatements() {
    QList<QByteArray> statements = bookkeepingTables() + derivationTable() + currentDerivations();
    for (const EntityDescription& entity : objectModel()) {
        statements += entityTables(entity);
        statements += rowCounter(entity);
    }
    for (const RelationshipDescription& relationship : relationshipModel()) {
        statements += relationshipTable(relationship);
    }
    for (const Index& index : kIndexes) {
        statements += QByteArray("CREATE INDEX ") + index.name + " ON " + index.definition;
    }
    return statements;
}

// A table without triggers, to which no foreign key in force points, is emptied as a whole.
QList<QByteArray> clearingStatements(Entity entity) {
    const EntityDescription& description = describe(entity);
    const QByteArray name = description.name;
    QList<QByteArray> statements = {"CREATE TABLE IF NOT EXISTS UnclearedPages(x INTEGER) STRICT",
                                    "DROP TRIGGER " + name + "Deleted"};
    for (const RelationshipDescription& relationship : relationshipModel()) {
        if (entity == Entity::Clip || entity == relationship.other) {
            statements += QByteArray("DELETE FROM ") + relationship.table;
        }
    }
    if (const QByteArray heavy = heavyTable(entity); !heavy.isEmpty()) {
        statements += "DELETE FROM " + heavy;
    }
    return statements << "DELETE FROM " + name
                      << "UPDATE RowCount SET rows = 0" + ofEntity(description)
                      << deletionCounter(description);
}

Result<bool> hasUnclearedPages(SqliteDatabase& database) {
    const auto marker = database.queryInteger(
        "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = 'UnclearedPages'");
    if (!marker) {
        return std::unexpected(marker.error());
    }
    return *marker > 0;
}

// The marker goes last: a process that ends in between begins again.
Result<void> rebuildFile(SqliteDatabase& database) {
    if (auto done = database.execute("VACUUM"); !done) {
        return done;
    }
    return database.execute("DROP TABLE IF EXISTS UnclearedPages");
}

Result<bool> hasAnyTable(SqliteDatabase& database) {
    const auto tables = database.queryInteger("SELECT count(*) FROM sqlite_master");
    if (!tables) {
        return std::unexpected(tables.error());
    }
    return *tables > 0;
}

Result<void> checkIsStore(SqliteDatabase& database) {
    return runProbes(database, {"SELECT id FROM Clip LIMIT 1", "SELECT id FROM Pinboard LIMIT 1",
                                "SELECT id FROM Tombstone LIMIT 1"});
}

Result<void> checkSchema(SqliteDatabase& database) {
    return runProbes(database, probes());
}

}  // namespace quillo
