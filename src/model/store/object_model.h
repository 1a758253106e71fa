// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>
#include <span>
#include <variant>

#include "base/clock.h"

namespace quillo {

/// The three kinds of stored record.
enum class Entity : quint8 { Clip, Pinboard, Tag };

/// A record's identity: the same on every machine. Hashable and ordered.
struct ObjectId {
    Entity entity = Entity::Clip;
    QUuid key;

    friend bool operator==(const ObjectId&, const ObjectId&) = default;
};

[[nodiscard]] size_t qHash(const ObjectId& id, size_t seed = 0) noexcept;

/// "x-quillo://Clip/<uuid>" and back; a null key for text that is none.
[[nodiscard]] QString uriFromObjectId(const ObjectId& id);
[[nodiscard]] ObjectId objectIdFromUri(const QString& uri);

/// An attribute's value; monostate is an absent one.
using Value = std::variant<std::monostate, qint64, double, QString, QByteArray, Timestamp>;

enum class AttributeType : quint8 { Integer, Real, Boolean, Text, Bytes, Moment };

/// Heavy attributes are loaded when asked for, one by one; listing never touches them.
enum class AttributeLoad : quint8 { Light, Heavy };

struct AttributeDescription {
    const char* name;  ///< Also the column's name.
    AttributeType type;
    bool isOptional;  ///< A required attribute starts as 0, false or "".
    AttributeLoad load = AttributeLoad::Light;
};

struct EntityDescription {
    Entity entity;
    const char* name;  ///< Also the table's name.
    std::span<const AttributeDescription> attributes;
};

/// The one declaration of the stored model; tables, records and change log are made from it.
[[nodiscard]] std::span<const EntityDescription> objectModel();
[[nodiscard]] const EntityDescription& describe(Entity entity);

/// Positions of Clip's attributes in its description.
enum class ClipAttribute : int {
    Attributed,
    CreatedAt,
    FileName,
    FileBookmark,
    FileSize,
    FileUti,
    ContentHash,
    ImageData,
    IsPinned,
    LinkImageData,
    LinkTitle,
    ModifiedAt,
    Plaintext,
    SourceBundleId,
    Type,
    UrlHost,
    UrlString,
    FilterMask,
};

enum class PinboardAttribute : int { ClipOrder, ColorHex, SortIndex, Title };

enum class TagAttribute : int { Name };

/// An attribute that is computed from light attributes of its own record whenever one of them is
/// written; nobody sets it. A store holds the version of the rule that it was computed with.
struct Derivation {
    Entity entity;
    int attribute;
    std::span<const int> inputs;
    int ruleVersion;
    /// From the inputs' values in their order.
    Value (*compute)(std::span<const Value> inputs);
};

[[nodiscard]] std::span<const Derivation> derivations();
[[nodiscard]] bool isDerived(Entity entity, int attribute);

/// The two many-to-many relationships, each seen from Clip; the other entity's end is the inverse.
enum class Relationship : quint8 { ClipPinboards, ClipTags };

struct RelationshipDescription {
    Relationship relationship;
    const char* table;       ///< Two columns: "clip" and "other".
    const char* nameAtClip;  ///< The relationship's name at Clip; at the other end it is "clips".
    Entity other;
};

[[nodiscard]] std::span<const RelationshipDescription> relationshipModel();
[[nodiscard]] const RelationshipDescription& describe(Relationship relationship);

/// True when the value is present and of that type.
[[nodiscard]] bool holdsType(const Value& value, AttributeType type);

/// What an attribute holds before anybody sets it.
[[nodiscard]] Value initialValue(const AttributeDescription& attribute);

}  // namespace quillo
