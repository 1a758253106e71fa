// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/selection_context.h"

#include <algorithm>
#include <utility>

namespace quillo::x11 {

namespace {

constexpr qsizetype kLargestChunk = 256 * 1024;
constexpr qsizetype kRequestHeader = 64;

SelectionAtoms internAtoms(AtomTable& atoms) {
    SelectionAtoms names;
    names.clipboard = atoms.atom("CLIPBOARD");
    names.clipboardManager = atoms.atom("CLIPBOARD_MANAGER");
    names.targets = atoms.atom("TARGETS");
    names.timestamp = atoms.atom("TIMESTAMP");
    names.multiple = atoms.atom("MULTIPLE");
    names.saveTargets = atoms.atom("SAVE_TARGETS");
    names.incr = atoms.atom("INCR");
    names.atomPair = atoms.atom("ATOM_PAIR");
    names.null = atoms.atom("NULL");
    names.manager = atoms.atom("MANAGER");
    names.timeProbe = atoms.atom("QUILLO_TIME");
    names.handOver = atoms.atom("QUILLO_HAND_OVER");
    for (std::size_t i = 0; i < kRingSize; ++i) {
        names.ring.at(i) = atoms.atom("QUILLO_READ_" + QByteArray::number(i));
    }
    return names;
}

xcb_window_t createWindow(const Connection& connection) {
    const xcb_window_t window = xcb_generate_id(connection.get());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), -10, -10,
                      1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    return window;
}

}  // namespace

SelectionContext::SelectionContext(Connection opened)
    : connection(std::move(opened)),
      atoms(connection.get()),
      names(internAtoms(atoms)),
      window(createWindow(connection)),
      chunkBytes(std::min<qsizetype>(
          kLargestChunk,
          qsizetype{xcb_get_maximum_request_length(connection.get())} * 4 - kRequestHeader)),
      now(std::chrono::steady_clock::now()) {}

std::optional<WindowProperty> SelectionContext::property(xcb_window_t of, xcb_atom_t name,
                                                         qsizetype maxBytes, bool andDelete) {
    const auto longs = static_cast<std::uint32_t>(maxBytes / 4 + 1);
    const auto cookie =
        xcb_get_property(xcb(), andDelete ? 1 : 0, of, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longs);
    xcb_generic_error_t* error = nullptr;
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb(), cookie, &error));
    const XcbPtr<xcb_generic_error_t> ownedError(error);
    if (!reply || reply->type == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    WindowProperty result{reply->type, reply->format, {}, reply->bytes_after > 0};
    if (!result.isTooLarge) {
        result.bytes = QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                  xcb_get_property_value_length(reply.get()));
    } else if (andDelete) {
        xcb_delete_property(xcb(), of, name);
    }
    return result;
}

xcb_window_t SelectionContext::ownerOf(xcb_atom_t selection) {
    const XcbPtr<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(xcb(), xcb_get_selection_owner(xcb(), selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void TimeProbe::ask(Answer answer) {
    m_waiting.push_back(std::move(answer));
    // An append would fail if another program had given the property another type.
    xcb_change_property(m_context.xcb(), XCB_PROP_MODE_REPLACE, m_context.window,
                        m_context.names.timeProbe, XCB_ATOM_STRING, 8, 0, nullptr);
}

bool TimeProbe::propertyChanged(const xcb_property_notify_event_t& event) {
    if (event.window != m_context.window || event.atom != m_context.names.timeProbe) {
        return false;
    }
    if (!m_waiting.empty()) {
        const Answer answer = std::move(m_waiting.front());
        m_waiting.pop_front();
        answer(event.time);
    }
    return true;
}

}  // namespace quillo::x11
