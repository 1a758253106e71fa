// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUuid>

#include "model/persistence_controller.h"
#include "overlay/overlay_clips.h"

namespace quillo {

/// What the panel does to the stored clips. What fails is logged and changes nothing that is seen.
/// Main thread.
class OverlayActions final {
public:
    /// Both must outlive this.
    OverlayActions(PersistenceController& persistence, const OverlayClips& clips)
        : m_persistence(persistence), m_clips(clips) {}

    void deleteForGood(const QList<QUuid>& clips);
    /// The pin in the chosen group, else the clip's own.
    void togglePin(const QUuid& clip);
    /// Moves a dragged card of the chosen group to the place of the card that it came over.
    void dragOver(const QUuid& dragged, int index);

private:
    [[nodiscard]] Result<void> save();

    PersistenceController& m_persistence;
    const OverlayClips& m_clips;
};

}  // namespace quillo
