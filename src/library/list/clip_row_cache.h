// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <QUuid>
#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "model/clip.h"
#include "model/store/object_context.h"

namespace quillo {

/// The clips of these identifiers, in no order; logs why when they cannot be read.
[[nodiscard]] QList<std::shared_ptr<Clip>> clipsToShow(ObjectContext& context,
                                                       const QList<QUuid>& ids);

/// What a long list shows of its clips, read for the places that are looked at and kept by
/// identifier, so that a list that changes reads little anew. On the context's thread.
template <typename Row>
class ClipRowCache final {
public:
    using MakeRow = std::function<Row(const Clip&)>;

    /// Beyond mostRows only those near the places that are looked at are kept. The context must
    /// outlive the cache.
    ClipRowCache(ObjectContext& context, qsizetype mostRows, MakeRow makeRow)
        : m_context(context), m_mostRows(mostRows), m_makeRow(std::move(makeRow)) {}

    /// Reads these places of a list, unless they were read already, by one fetch.
    void load(const QList<QUuid>& list, qsizetype first, qsizetype last) {
        QList<QUuid> missing;
        for (qsizetype i = std::max<qsizetype>(first, 0); i <= last && i < list.size(); ++i) {
            if (!m_rows.contains(list[i])) {
                missing.append(list[i]);
            }
        }
        if (missing.isEmpty()) {
            return;
        }
        if (m_rows.size() > m_mostRows) {
            keepNear(list, first, last);
        }
        for (const QUuid& id : std::as_const(missing)) {
            // One that is gone is not asked for again.
            m_rows.insert(id, std::nullopt);
        }
        for (const std::shared_ptr<Clip>& clip : clipsToShow(m_context, missing)) {
            m_rows.insert(clip->id(), m_makeRow(*clip));
        }
    }

    /// Null for a clip that was not loaded or is gone; valid until the next call of load() or
    /// forget().
    [[nodiscard]] const Row* row(const QUuid& clip) const {
        const auto found = m_rows.constFind(clip);
        return found != m_rows.cend() && *found ? &**found : nullptr;
    }

    /// Drops what is not so any more. The clips whose row was known and is another one now.
    QList<QUuid> forget(const ChangeSet& changes) {
        if (changes.everything) {
            m_rows.clear();
        }
        for (const QList<ObjectId>& ids : {changes.inserted, changes.deleted}) {
            for (const ObjectId& id : ids) {
                m_rows.remove(id.key);
            }
        }
        QList<QUuid> changed;
        for (const ChangeSet::Update& update : changes.updated) {
            if (m_rows.remove(update.id.key)) {
                changed.append(update.id.key);
            }
        }
        return changed;
    }

private:
    void keepNear(const QList<QUuid>& list, qsizetype first, qsizetype last) {
        const qsizetype beside = m_mostRows / 6;
        const qsizetype from = std::clamp<qsizetype>(first - beside, 0, list.size());
        const QList<QUuid> near = list.mid(from, last + beside - from + 1);
        const QSet<QUuid> kept(near.begin(), near.end());
        m_rows.removeIf([&](const auto& row) { return !kept.contains(row.key()); });
    }

    ObjectContext& m_context;
    qsizetype m_mostRows;
    MakeRow m_makeRow;
    QHash<QUuid, std::optional<Row>> m_rows;
};

}  // namespace quillo
