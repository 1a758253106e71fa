// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/outgoing_transfers.h"

#include <algorithm>
#include <utility>

namespace quillo::x11 {

namespace {

constexpr std::size_t kMostTransfers = 256;

void writeProperty(SelectionContext& context, xcb_window_t window, xcb_atom_t property,
                   xcb_atom_t type, QByteArrayView bytes) {
    xcb_change_property(context.xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

}  // namespace

OutgoingTransfers::OutgoingTransfers(SelectionContext& context, const PasteboardLimits& limits)
    : m_context(context), m_limits(limits) {}

bool OutgoingTransfers::send(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                             const QByteArray& bytes) {
    // A requestor that uses a property anew has given up what it asked for there before.
    drop([&](const Transfer& t) { return t.requestor == requestor && t.property == property; });
    if (bytes.size() <= m_context.chunkBytes) {
        writeProperty(m_context, requestor, property, type, bytes);
        return true;
    }
    if (m_transfers.size() >= kMostTransfers) {
        return false;
    }
    begin({requestor, property, type, bytes, 0, m_context.now + m_limits.idleTransfer});
    return true;
}

void OutgoingTransfers::propertyChanged(const xcb_property_notify_event_t& event) {
    if (event.state != XCB_PROPERTY_DELETE) {
        return;
    }
    const auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(), [&](const auto& t) {
        return t.requestor == event.window && t.property == event.atom;
    });
    if (transfer == m_transfers.end()) {
        return;
    }
    transfer->deadline = m_context.now + m_limits.idleTransfer;
    if (sendPart(*transfer)) {
        drop([&](const Transfer& t) { return &t == &*transfer; });
    }
}

void OutgoingTransfers::windowGone(xcb_window_t window) {
    std::erase_if(m_transfers, [&](const Transfer& t) { return t.requestor == window; });
}

std::optional<TimePoint> OutgoingTransfers::deadline() const {
    const auto first = std::min_element(
        m_transfers.cbegin(), m_transfers.cend(),
        [](const Transfer& a, const Transfer& b) { return a.deadline < b.deadline; });
    return first != m_transfers.cend() ? std::optional(first->deadline) : std::nullopt;
}

void OutgoingTransfers::expire() {
    drop([&](const Transfer& t) { return t.deadline <= m_context.now; });
}

void OutgoingTransfers::begin(Transfer transfer) {
    watch(transfer.requestor, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    const auto size = static_cast<std::uint32_t>(
        std::min<qsizetype>(transfer.bytes.size(), std::numeric_limits<std::int32_t>::max()));
    xcb_change_property(m_context.xcb(), XCB_PROP_MODE_REPLACE, transfer.requestor,
                        transfer.property, m_context.names.incr, 32, 1, &size);
    m_transfers.push_back(std::move(transfer));
}

bool OutgoingTransfers::sendPart(Transfer& transfer) {
    const qsizetype size = std::min(m_context.chunkBytes, transfer.bytes.size() - transfer.sent);
    writeProperty(m_context, transfer.requestor, transfer.property, transfer.type,
                  QByteArrayView(transfer.bytes).sliced(transfer.sent, size));
    transfer.sent += size;
    return size == 0;
}

template <typename Condition>
void OutgoingTransfers::drop(Condition condition) {
    for (auto it = m_transfers.begin(); it != m_transfers.end();) {
        if (!condition(*it)) {
            ++it;
            continue;
        }
        const xcb_window_t requestor = it->requestor;
        it = m_transfers.erase(it);
        if (std::none_of(m_transfers.cbegin(), m_transfers.cend(),
                         [&](const Transfer& t) { return t.requestor == requestor; })) {
            watch(requestor, XCB_EVENT_MASK_NO_EVENT);
        }
    }
}

void OutgoingTransfers::watch(xcb_window_t requestor, std::uint32_t events) {
    xcb_change_window_attributes(m_context.xcb(), requestor, XCB_CW_EVENT_MASK, &events);
}

}  // namespace quillo::x11
