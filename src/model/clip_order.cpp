// SPDX-License-Identifier: MIT
#include "model/clip_order.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <optional>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr auto kClipId = "clipID"_L1;
constexpr auto kIsPinned = "isPinned"_L1;

// Qt reads a UUID in several spellings and gives the null one for what is none.
std::optional<QUuid> uuidFromText(const QString& text) {
    const QUuid uuid = QUuid::fromString(text);
    const QString canonical = uuid.toString(QUuid::WithoutBraces);
    return canonical.compare(text, Qt::CaseInsensitive) == 0 ? std::optional(uuid) : std::nullopt;
}

std::optional<ClipOrderEntry> entryFrom(const QJsonObject& object) {
    const auto clipId = uuidFromText(object.value(kClipId).toString());
    const QJsonValue isPinned = object.value(kIsPinned);
    if (!clipId || !isPinned.isBool()) {
        return std::nullopt;
    }
    return ClipOrderEntry{*clipId, isPinned.toBool()};
}

}  // namespace

QList<ClipOrderEntry> clipOrderFromJson(const QByteArray& document) {
    QList<ClipOrderEntry> entries;
    const QJsonArray array = QJsonDocument::fromJson(document).array();
    for (const QJsonValue element : array) {
        const auto entry = entryFrom(element.toObject());
        if (!entry) {
            return {};
        }
        entries.append(*entry);
    }
    return entries;
}

QByteArray clipOrderToJson(const QList<ClipOrderEntry>& entries) {
    QJsonArray array;
    for (const ClipOrderEntry& entry : entries) {
        array.append(QJsonObject{{kClipId, entry.clipId.toString(QUuid::WithoutBraces).toUpper()},
                                 {kIsPinned, entry.isPinned}});
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

}  // namespace quillo
