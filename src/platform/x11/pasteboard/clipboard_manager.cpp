// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/clipboard_manager.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillo::x11 {

namespace {

// A desktop has no more programs that quit at once; one that asks without end is refused.
constexpr std::size_t kMostWaiting = 64;

}  // namespace

ClipboardManager::ClipboardManager(SelectionContext& context, TimeProbe& probe,
                                   SelectionServer& server, const PasteboardLimits& limits, Ask ask)
    : m_context(context),
      m_probe(probe),
      m_server(server),
      m_limits(limits),
      m_ask(std::move(ask)) {}

void ClipboardManager::start() {
    ownerChanged(m_context.ownerOf(m_context.names.clipboardManager));
}

void ClipboardManager::ownerChanged(xcb_window_t owner) {
    m_isOurs = owner == m_context.window;
    if (!m_isOurs) {
        answerAll(false);
    }
    if (owner == XCB_WINDOW_NONE) {
        m_probe.ask([this](xcb_timestamp_t time) { take(time); });
    }
}

void ClipboardManager::requested(const xcb_selection_request_event_t& event) {
    auto request = event;
    request.property = event.property != XCB_ATOM_NONE ? event.property : event.target;
    if (request.target == m_context.names.targets) {
        answerTargets(request);
        return;
    }
    if (request.target != m_context.names.saveTargets || m_waiting.size() >= kMostWaiting) {
        m_server.notify(request, false);
        return;
    }
    // It waits from before the question is put: the answer may come at once.
    m_waiting.push_back({request, m_context.now + m_limits.saveTargets});
    if (const Saving saving = m_ask(); saving != Saving::Open) {
        answerAll(saving == Saving::Done);
    }
}

void ClipboardManager::answerAll(bool isSaved) {
    for (const Waiting& waiting : std::exchange(m_waiting, {})) {
        answer(waiting.request, isSaved);
    }
}

std::optional<TimePoint> ClipboardManager::deadline() const {
    const auto first = std::min_element(
        m_waiting.cbegin(), m_waiting.cend(),
        [](const Waiting& a, const Waiting& b) { return a.deadline < b.deadline; });
    return first != m_waiting.cend() ? std::optional(first->deadline) : std::nullopt;
}

void ClipboardManager::expire() {
    std::erase_if(m_waiting, [this](const Waiting& waiting) {
        if (waiting.deadline > m_context.now) {
            return false;
        }
        answer(waiting.request, false);
        return true;
    });
}

void ClipboardManager::take(xcb_timestamp_t time) {
    const xcb_atom_t selection = m_context.names.clipboardManager;
    if (m_context.ownerOf(selection) == XCB_WINDOW_NONE) {
        xcb_set_selection_owner(m_context.xcb(), m_context.window, selection, time);
        announce(time);
    }
}

/// A new manager says so to everybody who watches the root window (ICCCM 2.8).
void ClipboardManager::announce(xcb_timestamp_t time) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_context.connection.root();
    event.type = m_context.names.manager;
    event.data.data32[0] = time;
    event.data.data32[1] = m_context.names.clipboardManager;
    event.data.data32[2] = m_context.window;
    xcb_send_event(m_context.xcb(), 0, event.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

void ClipboardManager::answer(const xcb_selection_request_event_t& request, bool isSaved) {
    if (isSaved) {
        xcb_change_property(m_context.xcb(), XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, m_context.names.null, 32, 0, nullptr);
    }
    m_server.notify(request, isSaved);
}

void ClipboardManager::answerTargets(const xcb_selection_request_event_t& request) {
    const std::array targets{m_context.names.targets, m_context.names.saveTargets};
    xcb_change_property(m_context.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        XCB_ATOM_ATOM, 32, targets.size(), targets.data());
    m_server.notify(request, true);
}

}  // namespace quillo::x11
