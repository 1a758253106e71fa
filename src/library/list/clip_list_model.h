// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QUuid>
#include <optional>

#include "base/clock.h"
#include "library/list/clip_row_cache.h"
#include "model/clip.h"
#include "model/persistence_controller.h"

namespace quillo {

/// What a row says of its clip.
struct ClipRow {
    std::optional<ClipType> kind;  ///< None for a kind that this version does not know.
    QString text;                  ///< One line, bounded.
    std::optional<Timestamp> createdAt;
};

/// Clips as rows. Holds their identifiers and reads the rest, never a heavy attribute, when a row
/// is looked at, so that a list of the whole history costs next to nothing. Follows changes of the
/// clips that it has; which it has is told to it. Main thread.
class ClipListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    /// Both must outlive the model.
    ClipListModel(PersistenceController& persistence, const Clock& clock,
                  QObject* parent = nullptr);

    void setIds(const QList<QUuid>& ids);
    [[nodiscard]] const QList<QUuid>& ids() const { return m_ids; }
    /// An absent row for a clip that is gone.
    [[nodiscard]] ClipRow row(int index) const;
    /// How long ago the row's clip was copied, for people.
    [[nodiscard]] QString age(int index) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// The row's text, and what a screen reader says of it.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    void storeChanged(const ChangeSet& changes);

    const Clock& m_clock;
    QList<QUuid> m_ids;
    mutable ClipRowCache<ClipRow> m_rows;
};

/// "now", "2 min ago", "1 hr ago", "1 day ago", then weeks, months and years; "Unknown" for no
/// moment. One in the future is now.
[[nodiscard]] QString relativeTime(std::optional<Timestamp> moment, Timestamp now);

/// The name of the kind's symbol ("doc.text"); that of a text for an unknown kind.
[[nodiscard]] QString kindSymbol(std::optional<ClipType> kind);

}  // namespace quillo
