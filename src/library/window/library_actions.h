// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

#include "library/groups/group_list.h"
#include "library/window/clip_grid_reordering.h"
#include "model/persistence_controller.h"
#include "paste/paste_back.h"

class QMimeData;

namespace quillo {

/// What the library does to clips and pinboards, to one or to many at once. Deleted clips are out
/// of sight at once and out of the store when the time for second thoughts is over. What concerns
/// many is done on the store's thread, a moment after the call. What fails is logged and changes
/// nothing that is seen. Main thread.
class LibraryActions final : public QObject {
    Q_OBJECT

public:
    /// Of more clips at once only these are copied together.
    static constexpr qsizetype kMostCopied = 2'000;

    /// Everything must outlive this.
    LibraryActions(PersistenceController& persistence, PasteBack& pasteBack,
                   const GroupList& groups, std::chrono::milliseconds secondThoughts,
                   QObject* parent = nullptr);
    /// Completes what is pending.
    ~LibraryActions() override;

    /// One clip in full, as the detail pane copies it; the files or texts of several. How many of
    /// them could be copied.
    qsizetype copy(const QList<QUuid>& clips);
    /// What dragging the clips gives another program; null when they are gone.
    [[nodiscard]] std::unique_ptr<QMimeData> dragData(const QList<QUuid>& clips) const;
    /// What a card's menu copies: the image, else the text, else the address.
    void copyCard(const QUuid& clip);
    void copyTransformed(const QUuid& clip, TextTransformation transformation);
    void setPinned(const QList<QUuid>& clips, bool isPinned);
    void setMembers(const QUuid& pinboard, const QList<QUuid>& clips, bool areMembers);
    /// Within the pinboard's own order.
    void moveClips(const QUuid& pinboard, const ClipMove& move);

    /// Further ones join those that are pending, and the time starts again.
    void deleteClips(const QList<QUuid>& clips);
    void undoDeletion();
    void completeDeletion();
    [[nodiscard]] const QSet<QUuid>& pendingClips() const { return m_pending; }

    /// Deletes it at once. What is given back makes it again: its name, colour, place and clips, in
    /// a record of its own.
    [[nodiscard]] std::function<void()> deletePinboard(const QUuid& pinboard);

Q_SIGNALS:
    void pendingChanged();

private:
    [[nodiscard]] ObjectContext& context() const { return m_persistence.viewContext(); }
    [[nodiscard]] QList<std::shared_ptr<Clip>> fetch(const QList<QUuid>& clips) const;
    void inPieces(const QList<QUuid>& clips,
                  const std::function<void(ObjectContext&, const QList<QUuid>&)>& work);

    PersistenceController& m_persistence;
    PasteBack& m_pasteBack;
    const GroupList& m_groups;
    QSet<QUuid> m_pending;
    QTimer m_timer;
};

/// Whether all of them are pinned; never of more than LibraryActions::kMostCopied.
[[nodiscard]] bool arePinned(ObjectContext& context, const QList<QUuid>& clips);

}  // namespace quillo
