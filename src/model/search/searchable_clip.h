// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <optional>

#include "model/search/search_index.h"
#include "model/search/text_folding.h"
#include "model/store/object_context.h"

namespace quillo {

/// One clip as a search reads it from the store; `indexed.text` is filled by foldFields.
struct SearchableClip {
    IndexedClip indexed;
    QString plaintext;
    QString urlString;
    QString fileName;
};

/// A piece of the whole history in the store's own order, and where the next piece begins.
struct SearchableClips {
    QList<SearchableClip> clips;
    std::optional<qint64> end;  ///< None once everything was read.
};

/// Reads through a background context, on the store's thread.
[[nodiscard]] Result<SearchableClips> readSearchableClips(ObjectContext& context, qint64 after,
                                                          qsizetype limit);
/// The clips of these ids that exist, in no order.
[[nodiscard]] Result<QList<SearchableClip>> readSearchableClips(ObjectContext& context,
                                                                const QList<QUuid>& ids);

/// The clip's own fields, folded and joined so that no match reaches over two of them. The name of
/// its source program is not among them. Any thread.
[[nodiscard]] QByteArray foldedFields(const SearchableClip& clip, CaseFolding folding);

}  // namespace quillo
