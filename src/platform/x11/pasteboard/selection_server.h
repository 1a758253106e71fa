// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "platform/pasteboard_formats.h"
#include "platform/x11/pasteboard/outgoing_transfers.h"
#include "platform/x11/pasteboard/selection_context.h"

namespace quillo::x11 {

using SharedOffers = std::shared_ptr<const PasteboardOffers>;

/// Owns CLIPBOARD and PRIMARY with our contents and answers the programs that ask for them
/// (ICCCM 2.2, 2.6). A reply that must first be made is made elsewhere and keeps nobody waiting
/// but its requestor. Lives on the pasteboard's thread.
class SelectionServer final {
public:
    using Made = std::function<void(std::optional<RawReply>)>;
    /// Makes a reply without blocking and hands it over on the pasteboard's thread.
    using Make = std::function<void(const PasteboardOffer&, Made)>;

    SelectionServer(SelectionContext& context, TimeProbe& probe, OutgoingTransfers& transfers,
                    Make make);

    /// Takes the selection as of the server's present time.
    void claim(xcb_atom_t selection, PasteboardOffers offers);
    /// Takes the selection as of a given time, in vain if somebody took it later than that.
    void claimAt(xcb_atom_t selection, SharedOffers offers, xcb_timestamp_t time);

    /// The server says that CLIPBOARD is ours since the given time.
    void confirmed(xcb_timestamp_t time);
    /// CLIPBOARD belongs to somebody else, or to nobody.
    void clipboardLost();
    /// Another program took a selection of ours.
    void cleared(const xcb_selection_clear_event_t& event);

    void requested(const xcb_selection_request_event_t& event);

    /// What CLIPBOARD holds of ours; empty while it is not ours.
    [[nodiscard]] SharedOffers clipboard() const { return m_clipboard.offers; }
    [[nodiscard]] xcb_timestamp_t clipboardTime() const { return m_clipboard.time; }

    /// Tells the requestor that its request was met, or refused.
    void notify(const xcb_selection_request_event_t& request, bool isMet);

private:
    struct Holding {
        SharedOffers offers;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
    };
    struct Conversion {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
    };
    using Done = std::function<void(bool)>;
    struct Multiple;

    const Holding* holding(xcb_atom_t selection) const;
    void convert(const Holding& from, const Conversion& conversion, Done done);
    void convertOffer(const PasteboardOffer& offer, const Conversion& conversion, Done done);
    void convertMultiple(const Holding& from, const xcb_selection_request_event_t& event);
    void writeTargets(const Holding& from, const Conversion& conversion);
    void finish(const Multiple& multiple);

    SelectionContext& m_context;
    TimeProbe& m_probe;
    OutgoingTransfers& m_transfers;
    Make m_make;
    Holding m_clipboard;
    Holding m_primary;
    std::deque<Holding> m_claims;  ///< Of CLIPBOARD, asked for and not confirmed yet.
};

}  // namespace quillo::x11
