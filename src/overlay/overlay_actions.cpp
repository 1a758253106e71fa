// SPDX-License-Identifier: MIT
#include "overlay/overlay_actions.h"

#include "base/logging.h"
#include "model/pinboard.h"
#include "overlay/strip_reordering.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcView, "SimpleOverlayView")

}  // namespace

Result<void> OverlayActions::save() {
    return m_persistence.viewContext().save();
}

void OverlayActions::deleteForGood(const QList<QUuid>& clips) {
    ObjectContext& context = m_persistence.viewContext();
    for (const QUuid& id : clips) {
        if (const std::shared_ptr<Clip> clip = context.object<Clip>(id)) {
            context.remove(*clip);
        }
    }
    if (const Result<void> saved = save(); !saved) {
        qCCritical(lcView, "Error deleting clip: %s", qUtf8Printable(saved.error().text));
    }
}

void OverlayActions::togglePin(const QUuid& id) {
    const std::shared_ptr<Clip> clip = m_persistence.viewContext().object<Clip>(id);
    if (clip == nullptr) {
        return;
    }
    if (const std::shared_ptr<Pinboard> group = m_clips.group()) {
        group->togglePin(id);
    } else {
        clip->setPinned(!clip->isPinned());
    }
    if (const Result<void> saved = save(); !saved) {
        qCCritical(lcView, "Error pinning clip: %s", qUtf8Printable(saved.error().text));
    }
}

void OverlayActions::dragOver(const QUuid& dragged, int index) {
    const std::shared_ptr<Pinboard> group = m_clips.group();
    const std::optional<OrderMove> move =
        moveOnDragOver(m_clips.cards(), dragged, index, group != nullptr);
    if (!move) {
        return;
    }
    Result<void> done = group->moveVisible(m_clips.visibleIds(), *move);
    if (done) {
        done = save();
    }
    if (!done) {
        qCCritical(lcView, "Error moving clip: %s", qUtf8Printable(done.error().text));
    }
}

}  // namespace quillo
