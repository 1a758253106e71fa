// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/selection_server.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quillo::x11 {

namespace {

constexpr qsizetype kLargestPairList = 4096;

void writeAtoms(SelectionContext& context, xcb_window_t window, xcb_atom_t property,
                xcb_atom_t type, const std::vector<xcb_atom_t>& atoms) {
    xcb_change_property(context.xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

std::vector<xcb_atom_t> atomsIn(const QByteArray& bytes) {
    std::vector<xcb_atom_t> atoms(static_cast<std::size_t>(bytes.size()) / sizeof(xcb_atom_t));
    std::copy_n(bytes.constData(), atoms.size() * sizeof(xcb_atom_t),
                reinterpret_cast<char*>(atoms.data()));
    return atoms;
}

}  // namespace

/// A request for several targets at once; answered when the last of them is.
struct SelectionServer::Multiple {
    xcb_selection_request_event_t request{};
    std::vector<xcb_atom_t> pairs;
    std::size_t open = 0;
    bool anyRefused = false;
};

SelectionServer::SelectionServer(SelectionContext& context, TimeProbe& probe,
                                 OutgoingTransfers& transfers, Make make)
    : m_context(context), m_probe(probe), m_transfers(transfers), m_make(std::move(make)) {}

void SelectionServer::claim(xcb_atom_t selection, PasteboardOffers offers) {
    auto shared = std::make_shared<const PasteboardOffers>(std::move(offers));
    m_probe.ask(
        [this, selection, shared](xcb_timestamp_t time) { claimAt(selection, shared, time); });
}

void SelectionServer::claimAt(xcb_atom_t selection, SharedOffers offers, xcb_timestamp_t time) {
    xcb_set_selection_owner(m_context.xcb(), m_context.window, selection, time);
    if (selection == m_context.names.clipboard) {
        m_claims.push_back({std::move(offers), time});
    } else {
        m_primary = {std::move(offers), time};
    }
}

void SelectionServer::confirmed(xcb_timestamp_t time) {
    while (!m_claims.empty()) {
        Holding claim = std::move(m_claims.front());
        m_claims.pop_front();
        if (claim.time == time) {
            m_clipboard = std::move(claim);
            return;
        }
    }
}

void SelectionServer::clipboardLost() {
    m_clipboard = {};
}

void SelectionServer::cleared(const xcb_selection_clear_event_t& event) {
    // It may tell of a loss that was made good since; CLIPBOARD's owner is known by XFixes.
    if (event.selection == XCB_ATOM_PRIMARY && !isEarlier(event.time, m_primary.time)) {
        m_primary = {};
    }
}

void SelectionServer::requested(const xcb_selection_request_event_t& event) {
    // The request's time is not held against the start of our ownership: a program whose clock
    // runs behind would find nothing to paste.
    const Holding* const from = holding(event.selection);
    if (from == nullptr || !from->offers || event.requestor == m_context.window) {
        // A read of ours can be on its way to the last owner when the selection becomes ours. A
        // transfer to our own window would change what that window hears.
        notify(event, false);
        return;
    }
    if (event.target == m_context.names.multiple) {
        convertMultiple(*from, event);
        return;
    }
    // Old programs leave the property out and mean the target (ICCCM 2.2).
    auto request = event;
    request.property = event.property != XCB_ATOM_NONE ? event.property : event.target;
    convert(*from, {request.requestor, request.target, request.property},
            [this, request](bool isMet) { notify(request, isMet); });
}

void SelectionServer::notify(const xcb_selection_request_event_t& request, bool isMet) {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = isMet ? request.property : xcb_atom_t{XCB_ATOM_NONE};
    std::array<char, 32> wire{};  // xcb sends 32 bytes whatever the event's own size.
    std::copy_n(reinterpret_cast<const char*>(&event), sizeof event, wire.data());
    xcb_send_event(m_context.xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, wire.data());
}

const SelectionServer::Holding* SelectionServer::holding(xcb_atom_t selection) const {
    return selection == m_context.names.clipboard ? &m_clipboard
           : selection == XCB_ATOM_PRIMARY        ? &m_primary
                                                  : nullptr;
}

void SelectionServer::convert(const Holding& from, const Conversion& conversion, Done done) {
    if (conversion.property == XCB_ATOM_NONE) {
        done(false);
        return;
    }
    if (conversion.target == m_context.names.targets) {
        writeTargets(from, conversion);
        done(true);
        return;
    }
    if (conversion.target == m_context.names.timestamp) {
        xcb_change_property(m_context.xcb(), XCB_PROP_MODE_REPLACE, conversion.requestor,
                            conversion.property, XCB_ATOM_INTEGER, 32, 1, &from.time);
        done(true);
        return;
    }
    const QByteArray name = m_context.atoms.name(conversion.target);
    const auto offer =
        std::find_if(from.offers->cbegin(), from.offers->cend(),
                     [&](const PasteboardOffer& candidate) { return candidate.target == name; });
    if (offer == from.offers->cend()) {
        done(false);
        return;
    }
    convertOffer(*offer, conversion, std::move(done));
}

void SelectionServer::convertOffer(const PasteboardOffer& offer, const Conversion& conversion,
                                   Done done) {
    m_make(offer, [this, conversion, done = std::move(done)](std::optional<RawReply> reply) {
        done(reply && m_transfers.send(conversion.requestor, conversion.property,
                                       m_context.atoms.atom(reply->type), reply->bytes));
    });
}

void SelectionServer::convertMultiple(const Holding& from,
                                      const xcb_selection_request_event_t& event) {
    const auto list = m_context.property(event.requestor, event.property, kLargestPairList, false);
    if (!list || list->format != 32 || list->isTooLarge) {
        notify(event, false);
        return;
    }
    auto multiple = std::make_shared<Multiple>();
    multiple->request = event;
    multiple->pairs = atomsIn(list->bytes);
    multiple->open = multiple->pairs.size() / 2 + 1;  // One for the loop below itself.
    const auto closeOne = [this, multiple] {
        if (--multiple->open == 0) {
            finish(*multiple);
        }
    };
    for (std::size_t i = 0; i + 1 < multiple->pairs.size(); i += 2) {
        const Conversion conversion{event.requestor, multiple->pairs.at(i),
                                    multiple->pairs.at(i + 1)};
        convert(from, conversion, [multiple, closeOne, i](bool isMet) {
            if (!isMet) {
                multiple->pairs.at(i + 1) = XCB_ATOM_NONE;
                multiple->anyRefused = true;
            }
            closeOne();
        });
    }
    closeOne();
}

void SelectionServer::writeTargets(const Holding& from, const Conversion& conversion) {
    const SelectionAtoms& names = m_context.names;
    std::vector<xcb_atom_t> targets;
    for (const PasteboardOffer& offer : *from.offers) {
        targets.push_back(m_context.atoms.atom(offer.target));
    }
    targets.insert(targets.end(), {names.targets, names.multiple, names.timestamp});
    writeAtoms(m_context, conversion.requestor, conversion.property, XCB_ATOM_ATOM, targets);
}

void SelectionServer::finish(const Multiple& multiple) {
    if (multiple.anyRefused) {
        writeAtoms(m_context, multiple.request.requestor, multiple.request.property,
                   m_context.names.atomPair, multiple.pairs);
    }
    notify(multiple.request, true);
}

}  // namespace quillo::x11
