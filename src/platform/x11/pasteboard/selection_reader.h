// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <optional>

#include "platform/pasteboard.h"
#include "platform/x11/pasteboard/selection_context.h"

namespace quillo::x11 {

/// Asks the owner of CLIPBOARD for targets (ICCCM 2.4, 2.7.2): any number of reads at once, each
/// within its deadlines. Answers that come after their read was given up are swallowed, because
/// an owner whose requestor vanished may die of it. Lives on the pasteboard's thread.
class SelectionReader final {
public:
    /// Called exactly once for each read; absent when refused, late, too large or given up.
    using Answer = std::function<void(std::optional<RawReply>)>;

    SelectionReader(SelectionContext& context, const PasteboardLimits& limits);

    void read(xcb_atom_t target, xcb_timestamp_t time, Answer answer);

    /// Answers every read as absent, because the owner is another one now.
    void abortAll();

    void answered(const xcb_selection_notify_event_t& event);
    /// A part of a large answer has arrived, maybe.
    void propertyChanged(const xcb_property_notify_event_t& event);

    [[nodiscard]] std::optional<TimePoint> deadline() const;
    void expire();

private:
    enum class State {
        Free,
        Asked,
        Receiving,
        SwallowingAnswer,  ///< Given up before the answer came.
        SwallowingParts,   ///< Given up in the middle of a large answer.
    };
    struct Read {
        State state = State::Free;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        std::uint64_t serial = 0;
        TimePoint whole;  ///< The deadline of all of it.
        TimePoint next;   ///< The deadline of the next part.
        bool isSecondTry = false;
        int swallowedParts = 0;
        RawReply reply;
        Answer answer;
    };

    Read* takeFromRing();
    void start(xcb_atom_t target, xcb_timestamp_t time, TimePoint whole, bool isSecondTry,
               Answer answer);
    Read* answeredRead(const xcb_selection_notify_event_t& event);
    void refused(Read& read);
    void receiveAnswer(Read& read);
    void receivePart(Read& read);
    void swallowPart(Read& read);
    void complete(Read& read, std::optional<RawReply> reply);
    void giveUp(Read& read);
    static void finish(Read& read, State state, std::optional<RawReply> reply);
    static bool isRunning(const Read& read);

    SelectionContext& m_context;
    const PasteboardLimits m_limits;
    std::array<Read, kRingSize> m_ring;
    std::size_t m_nextSlot = 0;
    std::uint64_t m_lastSerial = 0;
    int m_stalls = 0;
};

}  // namespace quillo::x11
