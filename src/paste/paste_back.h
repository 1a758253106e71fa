// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QUuid>
#include <memory>
#include <optional>

#include "base/clock.h"
#include "model/clip.h"
#include "model/persistence_controller.h"
#include "paste/clip_contents.h"
#include "paste/text_transformation.h"
#include "platform/hot_keys.h"
#include "platform/key_event_poster.h"
#include "platform/pasteboard.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

class QMimeData;

namespace quillo {

/// What paste-back needs; everything must outlive it.
struct PasteBackServices {
    Pasteboard& pasteboard;
    Workspace& workspace;
    KeyEventPoster& keys;
    HotKeys& hotKeys;
    PersistenceController& persistence;
    const UserDefaults& defaults;
    ContentReaders readers;
    const Clock& clock;
};

/// The one owner of every copy that the program makes. Each write carries the marker, so that it
/// is never captured. Main thread; every call returns at once.
class PasteBack final : public QObject {
    Q_OBJECT

public:
    explicit PasteBack(PasteBackServices services, QObject* parent = nullptr);

    /// Copies a clip in its own kind, for the overlay. target is the program that it will be
    /// pasted into; one that pastes from PRIMARY is offered the text there too.
    void copyToPasteboard(const Clip& clip, const std::optional<RunningApplication>& target);

    /// The library card's copy action and the quick list's rows.
    void copyQuickly(const Clip& clip);

    /// The detail view's copy button.
    void copyInDetail(const Clip& clip);

    /// Several clips of the library. How many of them could be; where none, nothing is written.
    qsizetype copyTogether(const QList<std::shared_ptr<Clip>>& clips);

    /// What dragging the clip into another program gives it, in the clip's own kind. The services
    /// must outlive the data.
    [[nodiscard]] std::unique_ptr<QMimeData> dragData(const Clip& clip) const;
    /// The same of several.
    [[nodiscard]] std::unique_ptr<QMimeData> dragData(
        const QList<std::shared_ptr<Clip>>& clips) const;

    /// The clip's text transformed, for the detail view's transformation buttons; nothing happens,
    /// and the pasteboard stays as it is, when the clip has neither a text nor an address.
    void copyTransformed(const Clip& clip, TextTransformation transformation);

    /// After the panel was hidden: waits until 30 ms have passed and the target has the focus
    /// again, whichever is later, posts its paste keys (unless "enableAutoPaste" is false), then
    /// renews the clip's dates so that it comes first next time. When the focus is not back
    /// within 0.5 s nothing is posted: the clip is on the pasteboard, and pasteWithheld is
    /// emitted. A later call replaces a pending one.
    void pasteAndTouch(const QUuid& clip, const std::optional<RunningApplication>& target);

Q_SIGNALS:
    /// The keys were posted.
    void pasted();
    /// The clip was copied but could not be pasted.
    void pasteWithheld();

private:
    void delayIsOver(quint64 request);
    void focusIsKnown(quint64 request, bool hasFocus);
    void withhold(const char* reason);
    void postKeys(const RunningApplication& target);
    void touch(const QUuid& clip);
    [[nodiscard]] PasteKeys keysFor(const RunningApplication& target) const;

    struct Pending {
        QUuid clip;
        RunningApplication target;
    };

    PasteBackServices m_services;
    std::optional<Pending> m_pending;
    quint64 m_request = 0;
};

}  // namespace quillo
