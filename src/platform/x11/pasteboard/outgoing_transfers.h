// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <optional>

#include "platform/x11/pasteboard/selection_context.h"

namespace quillo::x11 {

/// Hands bytes to other programs through properties of their windows, large ones in parts
/// (INCR, ICCCM 2.7.2): any number at once, each at the pace of its requestor. One that takes
/// nothing is dropped. Lives on the pasteboard's thread.
class OutgoingTransfers final {
public:
    OutgoingTransfers(SelectionContext& context, const PasteboardLimits& limits);

    /// Writes the property, or the announcement of a large transfer whose parts then follow.
    /// False when too many transfers are under way; nothing is written then.
    [[nodiscard]] bool send(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                            const QByteArray& bytes);

    /// A requestor has taken a part, maybe.
    void propertyChanged(const xcb_property_notify_event_t& event);
    /// Drops what goes to a window that does not exist any more.
    void windowGone(xcb_window_t window);

    [[nodiscard]] std::optional<TimePoint> deadline() const;
    void expire();

private:
    struct Transfer {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
        qsizetype sent = 0;
        TimePoint deadline;
    };

    void begin(Transfer transfer);
    /// True when it was the empty part that ends the transfer.
    bool sendPart(Transfer& transfer);
    template <typename Condition>
    void drop(Condition condition);
    void watch(xcb_window_t requestor, std::uint32_t events);

    SelectionContext& m_context;
    const PasteboardLimits m_limits;
    std::list<Transfer> m_transfers;
};

}  // namespace quillo::x11
