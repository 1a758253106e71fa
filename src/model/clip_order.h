// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUuid>

namespace quillo {

/// One place in a group's own order of clips.
struct ClipOrderEntry {
    QUuid clipId;
    bool isPinned = false;  ///< Pinned inside that group.

    friend bool operator==(const ClipOrderEntry&, const ClipOrderEntry&) = default;
};

/// The entries of an order document: a JSON array of objects with "clipID", a UUID of 36
/// characters, and "isPinned". An absent document and one that cannot be understood as a whole
/// are an empty order; further keys are passed over.
[[nodiscard]] QList<ClipOrderEntry> clipOrderFromJson(const QByteArray& document);

/// The document without white space, UUIDs in capitals; "[]" for an empty order.
[[nodiscard]] QByteArray clipOrderToJson(const QList<ClipOrderEntry>& entries);

}  // namespace quillo
