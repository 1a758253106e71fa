// SPDX-License-Identifier: MIT
// The stored form of a group's order.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <string_view>

#include "model/clip_order.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qsizetype kUuidLength = 36;
// {"clipID":"","isPinned":false} with its comma and its UUID.
constexpr qsizetype kEntryLength = 31 + kUuidLength;

bool isHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool isHyphenPlace(qsizetype position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

// QUuid itself also takes braces and what follows a UUID.
std::optional<QUuid> uuidFromText(const QString& text) {
    if (text.size() != kUuidLength) {
        return std::nullopt;
    }
    for (qsizetype i = 0; i < kUuidLength; ++i) {
        if (isHyphenPlace(i) ? text[i] != u'-' : !isHexDigit(text[i])) {
            return std::nullopt;
        }
    }
    return QUuid::fromString(text);
}

char* writeText(char* out, std::string_view text) {
    return std::ranges::copy(text, out).out;
}

char* writeHex(char* out, quint32 value, int digits) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) {
        *out++ = kDigits[value >> shift & 15];
    }
    return out;
}

char* writeUuid(char* out, const QUuid& id) {
    out = writeText(writeHex(out, id.data1, 8), "-");
    out = writeText(writeHex(out, id.data2, 4), "-");
    out = writeText(writeHex(out, id.data3, 4), "-");
    for (int i = 0; i < 8; ++i) {
        out = i == 2 ? writeText(out, "-") : out;
        out = writeHex(out, id.data4[i], 2);
    }
    return out;
}

std::optional<ClipOrderEntry> entryFromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const QJsonValue pinned = object.value("isPinned"_L1);
    const auto id = uuidFromText(object.value("clipID"_L1).toString());
    if (!id.has_value() || !pinned.isBool()) {
        return std::nullopt;
    }
    return ClipOrderEntry{*id, pinned.toBool()};
}

}  // namespace

// Written in place: a large group is encoded with each of its moves.
QByteArray encodeClipOrder(const ClipOrderEntries& order) {
    QByteArray text(2 + order.size() * kEntryLength, Qt::Uninitialized);
    char* const begin = text.data();
    char* out = writeText(begin, "[");
    for (const ClipOrderEntry& entry : order) {
        out = writeText(out, out == begin + 1 ? "{\"clipID\":\"" : ",{\"clipID\":\"");
        out = writeUuid(out, entry.clipId);
        out = writeText(out, entry.isPinned ? "\",\"isPinned\":true}" : "\",\"isPinned\":false}");
    }
    out = writeText(out, "]");
    text.truncate(out - begin);
    return text;
}

ClipOrderEntries decodeClipOrder(const QByteArray& document) {
    const QJsonArray array = QJsonDocument::fromJson(document).array();
    ClipOrderEntries order;
    order.reserve(array.size());
    for (const QJsonValue json : array) {
        const auto entry = entryFromJson(json);
        if (!entry.has_value()) {
            return {};
        }
        order.append(*entry);
    }
    return order;
}

}  // namespace quillo
