// SPDX-License-Identifier: MIT
#pragma once

#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/pasteboard_formats.h"
#include "platform/x11/pasteboard/clipboard_keeper.h"
#include "platform/x11/pasteboard/clipboard_manager.h"
#include "platform/x11/pasteboard/command_queue.h"
#include "platform/x11/pasteboard/outgoing_transfers.h"
#include "platform/x11/pasteboard/selection_context.h"
#include "platform/x11/pasteboard/selection_reader.h"
#include "platform/x11/pasteboard/selection_server.h"

namespace quillo::x11 {

/// What the pasteboard's thread shares with its users. Thread-safe, and outlives the thread.
struct PasteboardLink {
    CommandQueue queue;
    std::atomic<qint64> changeCount = 1;
    std::atomic<qint64> supersededBelow = 1;  ///< A newer copy or a clearing ended those before.
    std::atomic<qint64> readEpoch = 0;        ///< Moves when every running read is to end.
    std::mutex listenerMutex;
    std::function<void(PasteboardChange)> listener;

    /// False when nobody listens.
    bool tell(PasteboardChange change);
};

/// What a source belongs to: the contents it was opened for, and the epoch of reads.
struct SourceKey {
    qint64 changeCount = 0;
    qint64 epoch = 0;
};

/// The event loop of the pasteboard: one connection, one thread, woken by the display server, by
/// commands and by deadlines, and by nothing else. All members but the constructor belong to the
/// thread that calls run().
class PasteboardThread final {
public:
    using TargetsAnswer = std::function<void(QList<QByteArray>)>;
    using Answer = SelectionReader::Answer;

    struct Settings {
        PasteboardConverters converters;
        PasteboardLimits limits;
        std::function<void()> connectionLost;
    };

    /// Watches the clipboard from here on; one or two round trips.
    PasteboardThread(Connection connection, std::uint8_t xfixesEvent,
                     std::shared_ptr<PasteboardLink> link, Settings settings);
    ~PasteboardThread();

    /// Returns when stop() was called or the connection is lost.
    void run();
    void stop();

    void targets(const SourceKey& key, const TargetsAnswer& answer);
    void fetch(const SourceKey& key, const QByteArray& target, Answer answer);
    void endReads();
    void write(PasteboardOffers offers);
    void writePrimary(PasteboardOffers offers);
    void settle(qint64 changeCount, std::optional<KeptContents> contents);

private:
    [[nodiscard]] bool isPresent(const SourceKey& key) const;
    [[nodiscard]] bool isOurs() const;
    void make(const PasteboardOffer& offer, SelectionServer::Made made);
    ClipboardManager::Saving saving();

    void runCommands();
    bool handleEvents();
    void handle(const xcb_generic_event_t& event);
    void handleError(const xcb_generic_error_t& error);
    void handleOwner(const xcb_generic_event_t& event);
    void handleAnswer(const xcb_selection_notify_event_t& event);
    void apply(const ClipboardKeeper::Outcome& outcome);
    void expire();
    [[nodiscard]] std::optional<TimePoint> deadline() const;
    void wait();
    void finish();
    [[nodiscard]] bool beginHandOver();

    std::shared_ptr<PasteboardLink> m_link;
    const Settings m_settings;
    const std::uint8_t m_xfixesEvent;
    SelectionContext m_context;
    TimeProbe m_probe;
    SelectionReader m_reader;
    OutgoingTransfers m_transfers;
    SelectionServer m_server;
    ClipboardManager m_manager;
    ClipboardKeeper m_keeper;
    QThreadPool m_makers;
    enum class Phase { Running, HandingOver, Over } m_phase = Phase::Running;
    std::optional<TimePoint> m_handOverDeadline;
};

}  // namespace quillo::x11
