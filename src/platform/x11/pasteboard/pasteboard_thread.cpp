// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/pasteboard_thread.h"

#include <poll.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "base/logging.h"

namespace quillo::x11 {

namespace {

QUILLO_LOG_CATEGORY(lcPasteboard, "X11Pasteboard")

constexpr qsizetype kMostTargets = 1000;
constexpr std::uint8_t kEventTypeMask = 0x7f;
constexpr std::uint8_t kBadWindow = 3;

void watchOwner(const SelectionContext& context, xcb_atom_t selection) {
    xcb_xfixes_select_selection_input(context.xcb(), context.window, selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

QList<xcb_atom_t> atomsIn(const QByteArray& bytes) {
    const qsizetype count =
        std::min<qsizetype>(bytes.size() / qsizetype{sizeof(xcb_atom_t)}, kMostTargets);
    QList<xcb_atom_t> atoms(count);
    std::copy_n(bytes.constData(), count * qsizetype{sizeof(xcb_atom_t)},
                reinterpret_cast<char*>(atoms.data()));
    atoms.removeAll(XCB_ATOM_NONE);
    return atoms;
}

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

}  // namespace

bool PasteboardLink::tell(PasteboardChange change) {
    const std::scoped_lock lock(listenerMutex);
    if (!listener) {
        return false;
    }
    listener(change);
    return true;
}

PasteboardThread::PasteboardThread(Connection connection, std::uint8_t xfixesEvent,
                                   std::shared_ptr<PasteboardLink> link, Settings settings)
    : m_link(std::move(link)),
      m_settings(std::move(settings)),
      m_xfixesEvent(xfixesEvent),
      m_context(std::move(connection)),
      m_probe(m_context),
      m_reader(m_context, m_settings.limits),
      m_transfers(m_context, m_settings.limits),
      m_server(m_context, m_probe, m_transfers,
               [this](const PasteboardOffer& offer, SelectionServer::Made made) {
                   make(offer, std::move(made));
               }),
      m_manager(m_context, m_probe, m_server, m_settings.limits, [this] { return saving(); }),
      m_keeper(m_settings.limits.ownerGrace, XCB_WINDOW_NONE) {
    m_makers.setMaxThreadCount(2);
    m_makers.setExpiryTimeout(1'000);
    watchOwner(m_context, m_context.names.clipboard);
    watchOwner(m_context, m_context.names.clipboardManager);
    m_keeper =
        ClipboardKeeper(m_settings.limits.ownerGrace, m_context.ownerOf(m_context.names.clipboard));
    m_manager.start();
}

PasteboardThread::~PasteboardThread() {
    m_makers.clear();
    m_makers.waitForDone();
}

void PasteboardThread::run() {
    while (m_phase != Phase::Over) {
        m_context.now = std::chrono::steady_clock::now();
        runCommands();
        if (!handleEvents()) {
            qCCritical(lcPasteboard) << "The connection to the X server is lost";
            finish();
            if (m_settings.connectionLost) {
                m_settings.connectionLost();
            }
            return;
        }
        expire();
        wait();
    }
    finish();
}

void PasteboardThread::stop() {
    m_phase = beginHandOver() ? Phase::HandingOver : Phase::Over;
}

void PasteboardThread::targets(const SourceKey& key, const TargetsAnswer& answer) {
    if (!isPresent(key)) {
        answer({});
        return;
    }
    if (isOurs()) {
        QList<QByteArray> names;
        for (const PasteboardOffer& offer : *m_server.clipboard()) {
            names.append(offer.target);
        }
        answer(names);
        return;
    }
    m_reader.read(
        m_context.names.targets, m_keeper.since(),
        [this, answer](const std::optional<RawReply>& reply) {
            answer(reply ? m_context.atoms.names(atomsIn(reply->bytes)) : QList<QByteArray>{});
        });
}

void PasteboardThread::fetch(const SourceKey& key, const QByteArray& target, Answer answer) {
    if (!isPresent(key)) {
        answer(std::nullopt);
        return;
    }
    if (!isOurs()) {
        m_reader.read(m_context.atoms.atom(target), m_keeper.since(), std::move(answer));
        return;
    }
    const SharedOffers offers = m_server.clipboard();
    const auto offer =
        std::find_if(offers->cbegin(), offers->cend(),
                     [&](const PasteboardOffer& candidate) { return candidate.target == target; });
    if (offer == offers->cend()) {
        answer(std::nullopt);
        return;
    }
    make(*offer, std::move(answer));
}

void PasteboardThread::endReads() {
    m_reader.abortAll();
}

void PasteboardThread::write(PasteboardOffers offers) {
    m_server.claim(m_context.names.clipboard, std::move(offers));
}

void PasteboardThread::writePrimary(PasteboardOffers offers) {
    m_server.claim(XCB_ATOM_PRIMARY, std::move(offers));
}

void PasteboardThread::settle(qint64 changeCount, std::optional<KeptContents> contents) {
    const bool isKept = contents.has_value();
    apply(m_keeper.settle(changeCount, std::move(contents)));
    if (changeCount == m_keeper.count()) {
        m_manager.answerAll(isKept);
    }
}

bool PasteboardThread::isPresent(const SourceKey& key) const {
    return m_phase == Phase::Running && key.changeCount == m_keeper.count() &&
           key.epoch == m_link->readEpoch && m_keeper.owner() != XCB_WINDOW_NONE;
}

bool PasteboardThread::isOurs() const {
    return m_keeper.owner() == m_context.window && m_server.clipboard() != nullptr;
}

/// A reply that must be converted is made by a thread of its own, because that can take a second.
void PasteboardThread::make(const PasteboardOffer& offer, SelectionServer::Made made) {
    const auto reply = offer.reply;
    if (reply->isReady()) {
        made(reply->get());
        return;
    }
    m_makers.start([link = m_link, reply, made = std::move(made)] {
        const std::optional<RawReply>& value = reply->get();
        if (!link->queue.post([made, value](PasteboardThread&) { made(value); })) {
            // The thread has ended, and those who waited have been answered.
            return;
        }
    });
}

ClipboardManager::Saving PasteboardThread::saving() {
    using Saving = ClipboardManager::Saving;
    if (m_keeper.owner() == XCB_WINDOW_NONE || isOurs()) {
        return Saving::Done;
    }
    if (m_keeper.isSettled()) {
        return m_keeper.hasKept() ? Saving::Done : Saving::Refused;
    }
    return m_link->tell(PasteboardChange::LeavingSoon) ? Saving::Open : Saving::Refused;
}

void PasteboardThread::runCommands() {
    for (const CommandQueue::Command& command : m_link->queue.take()) {
        command(*this);
    }
}

/// False when the connection is lost. Reading a reply can bring in events without making the
/// descriptor readable, so the queue is emptied whenever the loop is about to wait.
bool PasteboardThread::handleEvents() {
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_context.xcb())}) {
        m_context.now = std::chrono::steady_clock::now();
        handle(*event);
    }
    return xcb_connection_has_error(m_context.xcb()) == 0;
}

void PasteboardThread::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & kEventTypeMask;
    if (type == m_xfixesEvent) {
        handleOwner(event);
        return;
    }
    switch (type) {
        case 0:
            handleError(as<xcb_generic_error_t>(event));
            break;
        case XCB_PROPERTY_NOTIFY: {
            const auto& change = as<xcb_property_notify_event_t>(event);
            if (!m_probe.propertyChanged(change)) {
                m_reader.propertyChanged(change);
                m_transfers.propertyChanged(change);
            }
            break;
        }
        case XCB_SELECTION_NOTIFY:
            handleAnswer(as<xcb_selection_notify_event_t>(event));
            break;
        case XCB_SELECTION_REQUEST: {
            const auto& request = as<xcb_selection_request_event_t>(event);
            if (request.selection == m_context.names.clipboardManager) {
                m_manager.requested(request);
            } else {
                m_server.requested(request);
            }
            break;
        }
        case XCB_SELECTION_CLEAR:
            m_server.cleared(as<xcb_selection_clear_event_t>(event));
            break;
        case XCB_DESTROY_NOTIFY:
            m_transfers.windowGone(as<xcb_destroy_notify_event_t>(event).window);
            break;
        default:
            break;
    }
}

/// Windows of other programs may vanish between their request and our answer.
void PasteboardThread::handleError(const xcb_generic_error_t& error) {
    if (error.error_code == kBadWindow) {
        m_transfers.windowGone(error.resource_id);
    }
}

void PasteboardThread::handleOwner(const xcb_generic_event_t& event) {
    const auto& change = as<xcb_xfixes_selection_notify_event_t>(event);
    const bool isTaken = change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER &&
                         change.owner != XCB_WINDOW_NONE;
    if (change.selection == m_context.names.clipboardManager) {
        m_manager.ownerChanged(isTaken ? change.owner : xcb_window_t{XCB_WINDOW_NONE});
        return;
    }
    const bool isCleared = !isTaken && change.owner == XCB_WINDOW_NONE &&
                           change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
    if (isTaken || isCleared) {
        m_link->supersededBelow = m_keeper.count() + 1;
    }
    m_reader.abortAll();
    m_manager.answerAll(false);
    if (!isTaken) {
        m_server.clipboardLost();
        m_keeper.lost(isCleared ? OwnerLoss::Cleared : OwnerLoss::Quit, change.timestamp,
                      m_context.now);
        return;
    }
    if (change.owner == m_context.window) {
        m_server.confirmed(change.selection_timestamp);
    } else {
        m_server.clipboardLost();
    }
    apply(m_keeper.ownedBy(change.owner, change.selection_timestamp));
}

void PasteboardThread::handleAnswer(const xcb_selection_notify_event_t& event) {
    if (event.selection == m_context.names.clipboard) {
        m_reader.answered(event);
    } else if (m_phase == Phase::HandingOver &&
               event.selection == m_context.names.clipboardManager) {
        m_phase = Phase::Over;
    }
}

void PasteboardThread::apply(const ClipboardKeeper::Outcome& outcome) {
    if (outcome.restoration) {
        m_server.claimAt(m_context.names.clipboard,
                         std::make_shared<const PasteboardOffers>(
                             offersForKept(outcome.restoration->contents, m_settings.converters)),
                         outcome.restoration->time);
    }
    if (outcome.hasChanged) {
        m_link->changeCount = m_keeper.count();
        m_link->tell(PasteboardChange::Changed);
    }
}

void PasteboardThread::expire() {
    m_context.now = std::chrono::steady_clock::now();
    m_reader.expire();
    m_transfers.expire();
    m_manager.expire();
    apply(m_keeper.expire(m_context.now));
    if (m_handOverDeadline && *m_handOverDeadline <= m_context.now) {
        m_phase = Phase::Over;
    }
}

std::optional<TimePoint> PasteboardThread::deadline() const {
    std::optional<TimePoint> first;
    for (const auto& candidate : {m_reader.deadline(), m_transfers.deadline(), m_manager.deadline(),
                                  m_keeper.deadline(), m_handOverDeadline}) {
        if (candidate && (!first || *candidate < *first)) {
            first = candidate;
        }
    }
    return first;
}

void PasteboardThread::wait() {
    xcb_flush(m_context.xcb());
    // Flushing can read events while it waits to write.
    if (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_queued_event(m_context.xcb())}) {
        handle(*event);
        return;
    }
    int timeout = -1;
    if (const auto first = deadline()) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(*first - std::chrono::steady_clock::now());
        timeout = static_cast<int>(std::clamp<long>(left.count(), 0, 60'000));
    }
    std::array<pollfd, 2> descriptors{{
        {xcb_get_file_descriptor(m_context.xcb()), POLLIN, 0},
        {m_link->queue.fd(), POLLIN, 0},
    }};
    ::poll(descriptors.data(), descriptors.size(), m_phase == Phase::Over ? 0 : timeout);
}

/// Answers everybody who waits; whoever comes later finds the queue closed.
void PasteboardThread::finish() {
    m_phase = Phase::Over;
    m_reader.abortAll();
    m_makers.clear();
    m_makers.waitForDone();
    for (const CommandQueue::Command& command : m_link->queue.close()) {
        command(*this);
    }
    m_reader.abortAll();
    m_manager.answerAll(false);
    xcb_flush(m_context.xcb());
}

/// What we offer goes with us unless another clipboard manager takes it over. True when there is
/// one to wait for.
bool PasteboardThread::beginHandOver() {
    if (!isOurs() || m_manager.isOurs() ||
        m_context.ownerOf(m_context.names.clipboardManager) == XCB_WINDOW_NONE) {
        return false;
    }
    m_handOverDeadline = m_context.now + m_settings.limits.handOver;
    xcb_convert_selection(m_context.xcb(), m_context.window, m_context.names.clipboardManager,
                          m_context.names.saveTargets, m_context.names.handOver,
                          m_server.clipboardTime());
    return true;
}

}  // namespace quillo::x11
