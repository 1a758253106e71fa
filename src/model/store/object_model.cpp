// SPDX-License-Identifier: MIT
#include "model/store/object_model.h"

#include <QHashFunctions>
#include <QUrl>
#include <algorithm>
#include <array>
#include <utility>

#include "model/filter_mask.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using enum AttributeType;

constexpr AttributeDescription kClipAttributes[] = {
    {"attributed", Bytes, true, AttributeLoad::Heavy},
    {"createdAt", Moment, true},
    {"fileName", Text, true},
    {"fileBookmark", Bytes, true, AttributeLoad::Heavy},
    {"fileSize", Integer, false},
    {"fileUTI", Text, true},
    {"contentHash", Bytes, true},
    {"imageData", Bytes, true, AttributeLoad::Heavy},
    {"isPinned", Boolean, false},
    {"linkImageData", Bytes, true, AttributeLoad::Heavy},
    {"linkTitle", Text, true},
    {"modifiedAt", Moment, true},
    {"plaintext", Text, true},
    {"sourceBundleID", Text, true},
    {"type", Integer, false},
    {"urlHost", Text, true},
    {"urlString", Text, true},
    {"filterMask", Integer, false},
};

constexpr AttributeDescription kPinboardAttributes[] = {
    {"clipOrder", Bytes, true},
    {"colorHex", Text, true},
    {"sortIndex", Integer, false},
    {"title", Text, true},
};

constexpr AttributeDescription kTagAttributes[] = {{"name", Text, true}};

static_assert(std::size(kClipAttributes) == size_t(ClipAttribute::FilterMask) + 1);
static_assert(std::size(kPinboardAttributes) == size_t(PinboardAttribute::Title) + 1);
static_assert(std::size(kTagAttributes) == size_t(TagAttribute::Name) + 1);

constexpr int kFilterMaskInputs[] = {int(ClipAttribute::Type), int(ClipAttribute::Plaintext),
                                     int(ClipAttribute::UrlString), int(ClipAttribute::FileUti),
                                     int(ClipAttribute::FileName)};

std::optional<QString> textOf(const Value& value) {
    const auto* text = std::get_if<QString>(&value);
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

Value computeFilterMask(std::span<const Value> inputs) {
    const auto* type = std::get_if<qint64>(&inputs[0]);
    return Value(qint64{filterMaskOf({type != nullptr ? *type : 0, textOf(inputs[1]),
                                      textOf(inputs[2]), textOf(inputs[3]), textOf(inputs[4])})});
}

constexpr Derivation kDerivations[] = {{Entity::Clip, int(ClipAttribute::FilterMask),
                                        kFilterMaskInputs, kFilterRuleVersion, computeFilterMask}};

constexpr EntityDescription kModel[] = {
    {Entity::Clip, "Clip", kClipAttributes},
    {Entity::Pinboard, "Pinboard", kPinboardAttributes},
    {Entity::Tag, "Tag", kTagAttributes},
};

constexpr RelationshipDescription kRelationships[] = {
    {Relationship::ClipPinboards, "ClipPinboards", "pinboards", Entity::Pinboard},
    {Relationship::ClipTags, "ClipTags", "tags", Entity::Tag},
};

constexpr auto kScheme = "x-quillo"_L1;

}  // namespace

size_t qHash(const ObjectId& id, size_t seed) noexcept {
    return qHashMulti(seed, std::to_underlying(id.entity), id.key);
}

QString uriFromObjectId(const ObjectId& id) {
    return kScheme + u"://"_s + QLatin1StringView(describe(id.entity).name) + u'/' +
           id.key.toString(QUuid::WithoutBraces);
}

ObjectId objectIdFromUri(const QString& uri) {
    for (const EntityDescription& entity : kModel) {
        const QString prefix = kScheme + u"://"_s + QLatin1StringView(entity.name) + u'/';
        if (uri.startsWith(prefix)) {
            return {entity.entity, QUuid::fromString(QStringView(uri).mid(prefix.size()))};
        }
    }
    return {};
}

std::span<const EntityDescription> objectModel() {
    return kModel;
}

const EntityDescription& describe(Entity entity) {
    return kModel[std::to_underlying(entity)];
}

std::span<const Derivation> derivations() {
    return kDerivations;
}

bool isDerived(Entity entity, int attribute) {
    return std::ranges::any_of(kDerivations, [=](const Derivation& derivation) {
        return derivation.entity == entity && derivation.attribute == attribute;
    });
}

std::span<const RelationshipDescription> relationshipModel() {
    return kRelationships;
}

const RelationshipDescription& describe(Relationship relationship) {
    return kRelationships[std::to_underlying(relationship)];
}

bool holdsType(const Value& value, AttributeType type) {
    switch (type) {
        case Integer:
        case Boolean:
            return std::holds_alternative<qint64>(value);
        case Real:
            return std::holds_alternative<double>(value);
        case Text:
            return std::holds_alternative<QString>(value);
        case Bytes:
            return std::holds_alternative<QByteArray>(value);
        case Moment:
            return std::holds_alternative<Timestamp>(value);
    }
    return false;
}

Value initialValue(const AttributeDescription& attribute) {
    if (attribute.isOptional) {
        return {};
    }
    switch (attribute.type) {
        case Integer:
        case Boolean:
            return qint64{0};
        case Real:
            return 0.0;
        case Text:
            return QString(u""_s);
        case Bytes:
            return QByteArray("");
        case Moment:
            return Timestamp{};
    }
    return {};
}

}  // namespace quillo
