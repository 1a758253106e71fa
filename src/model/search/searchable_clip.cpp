// SPDX-License-Identifier: MIT
#include "model/search/searchable_clip.h"

#include <limits>

namespace quillo {
namespace {

using enum ClipAttribute;

const QList<int>& wantedAttributes() {
    static const QList<int> kWanted = {int(CreatedAt),      int(FileName),  int(IsPinned),
                                       int(Plaintext),      int(Type),      int(UrlString),
                                       int(SourceBundleId), int(FilterMask)};
    return kWanted;
}

qint64 integerOf(const Value& value) {
    const qint64* integer = std::get_if<qint64>(&value);
    return integer != nullptr ? *integer : 0;
}

QString textOf(const Value& value) {
    const QString* text = std::get_if<QString>(&value);
    return text != nullptr ? *text : QString();
}

qint64 momentOf(const Value& value) {
    const Timestamp* moment = std::get_if<Timestamp>(&value);
    return moment != nullptr ? moment->time_since_epoch().count()
                             : std::numeric_limits<qint64>::min();
}

// In the order of wantedAttributes().
SearchableClip clipFrom(const QUuid& id, std::span<const Value> values) {
    SearchableClip clip;
    const qint64 kind = integerOf(values[4]);
    clip.indexed.id = id;
    clip.indexed.createdAt = momentOf(values[0]);
    clip.indexed.isPinned = integerOf(values[2]) != 0;
    clip.indexed.kind =
        kind >= 0 && kind < IndexedClip::kOtherKind ? quint8(kind) : IndexedClip::kOtherKind;
    clip.indexed.source = textOf(values[6]);
    clip.indexed.filterMask = quint16(integerOf(values[7]));
    clip.fileName = textOf(values[1]);
    clip.plaintext = textOf(values[3]);
    clip.urlString = textOf(values[5]);
    return clip;
}

}  // namespace

Result<SearchableClips> readSearchableClips(ObjectContext& context, qint64 after, qsizetype limit) {
    SearchableClips piece;
    auto end = context.walk(
        {.entity = Entity::Clip, .attributes = wantedAttributes(), .after = after, .limit = limit},
        [&](const QUuid& id, std::span<const Value> values) {
            piece.clips.append(clipFrom(id, values));
        });
    if (!end) {
        return std::unexpected(end.error());
    }
    piece.end = *end;
    return piece;
}

Result<QList<SearchableClip>> readSearchableClips(ObjectContext& context, const QList<QUuid>& ids) {
    FetchRequest request;
    for (const QUuid& id : ids) {
        request.ids.append({Entity::Clip, id});
    }
    QList<SearchableClip> clips;
    if (ids.isEmpty()) {
        return clips;
    }
    const auto read = context.readValues(request, wantedAttributes(),
                                         [&](const QUuid& id, std::span<const Value> values) {
                                             clips.append(clipFrom(id, values));
                                         });
    if (!read) {
        return std::unexpected(read.error());
    }
    return clips;
}

QByteArray foldedFields(const SearchableClip& clip, CaseFolding folding) {
    QByteArray joined;
    for (const QString& field : {clip.plaintext, clip.urlString, clip.fileName}) {
        if (!field.isEmpty()) {
            joined += (joined.isEmpty() ? QByteArray() : QByteArray(1, TextArena::kEnd)) +
                      foldedText(field, folding);
        }
    }
    return joined;
}

}  // namespace quillo
