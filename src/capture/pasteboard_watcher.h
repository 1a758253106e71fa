// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <atomic>

#include "capture/clip_saver.h"
#include "capture/pasteboard_snapshot.h"
#include "platform/image_codec.h"
#include "platform/pasteboard.h"
#include "platform/tick_timer.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

namespace quillo {

/// What the watcher needs; everything must outlive it.
struct PasteboardWatcherServices {
    Pasteboard& pasteboard;
    Workspace& workspace;
    TickTimer& timer;
    ClipSaver& saver;
    const ImageCodec& images;
    const UserDefaults& defaults;
};

/// The capture loop. Changes of the pasteboard arm a tick on a 150 ms grid; the tick reads the
/// pasteboard once on the timer's worker thread and hands the first representation present to the
/// saver. What is on the pasteboard at construction is not captured; what was copied while the
/// watcher was stopped is captured once after start. start and stop belong to the main thread.
class PasteboardWatcher final : public QObject {
    Q_OBJECT

public:
    explicit PasteboardWatcher(PasteboardWatcherServices services, QObject* parent = nullptr);
    ~PasteboardWatcher() override;

    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }

    /// Queues a tick at once when there is a change that was not read yet. Returns at once.
    void checkSoon();

Q_SIGNALS:
    void isRunningChanged(bool isRunning);

private:
    void setRunning(bool isRunning);
    void pasteboardChanged(PasteboardChange change);
    void checkForChanges();
    [[nodiscard]] bool capture(PasteboardReading& reading);
    [[nodiscard]] std::optional<QString> sourceApplication() const;
    [[nodiscard]] bool dispatch(const PasteboardSnapshot& snapshot,
                                const std::optional<QString>& source);

    PasteboardWatcherServices m_services;
    std::atomic<qint64> m_lastChangeCount;
    bool m_isRunning = false;
};

}  // namespace quillo
