// SPDX-License-Identifier: MIT
#include "whole_program/other_program.h"

#include <poll.h>

#include <utility>
#include <vector>

#include "whole_program/screen_probe.h"

using namespace std::chrono_literals;

namespace quillo::bench {
namespace {

using x11::XcbPtr;

constexpr std::array<std::uint8_t, 16> kWindowClass = {'b', 'e', 'n', 'c', 'h', 0,
                                                       'B', 'e', 'n', 'c', 'h', 0};
constexpr std::uint8_t kClassLength = 12;

x11::Connection connected() {
    auto connection = x11::connectToServer();
    if (!connection) {
        qFatal("%s", qUtf8Printable(connection.error().text));
    }
    return std::move(*connection);
}

}  // namespace

OtherProgram::OtherProgram() : m_connection(connected()), m_atoms(m_connection.get()) {
    makeWindow();
    m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

OtherProgram::~OtherProgram() = default;

void OtherProgram::makeWindow() {
    xcb_connection_t* const x = m_connection.get();
    m_window = xcb_generate_id(x);
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
    xcb_create_window(x, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 40, 40, 600, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        kClassLength, kWindowClass.data());
    xcb_map_window(x, m_window);
    xcb_flush(x);
    for (const char* name :
         {"CLIPBOARD", "TARGETS", "ATOM", "UTF8_STRING", "image/png", "text/plain;charset=utf-8"}) {
        (void)m_atoms.atom(name);
    }
}

Moment OtherProgram::copyText(const QByteArray& text) {
    return copy({"UTF8_STRING", "text/plain;charset=utf-8"}, text);
}

Moment OtherProgram::copyPng(const QByteArray& png) {
    return copy({"image/png"}, png);
}

Moment OtherProgram::copy(QList<QByteArray> targets, const QByteArray& bytes) {
    const std::lock_guard lock(m_mutex);
    m_targets = std::move(targets);
    m_bytes = bytes;
    m_firstRequest.reset();
    m_requests = 0;
    xcb_set_selection_owner(m_connection.get(), m_window, m_atoms.atom("CLIPBOARD"),
                            XCB_CURRENT_TIME);
    const Moment now = std::chrono::steady_clock::now();
    xcb_flush(m_connection.get());
    return now;
}

std::optional<Moment> OtherProgram::firstRequest() {
    const std::lock_guard lock(m_mutex);
    return m_firstRequest;
}

int OtherProgram::requestCount() {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::optional<Moment> OtherProgram::pasteKeyAfter(Moment moment) {
    std::unique_lock lock(m_mutex);
    const bool came = m_changed.wait_for(lock, 1s, [&] { return m_pasteKey > moment; });
    return came ? std::optional(m_pasteKey) : std::nullopt;
}

void OtherProgram::run(const std::stop_token& stop) {
    pollfd descriptor{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
    while (!stop.stop_requested()) {
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            handle(*event);
        }
        poll(&descriptor, 1, 20);
    }
}

void OtherProgram::handle(const xcb_generic_event_t& event) {
    const Moment now = std::chrono::steady_clock::now();
    const std::lock_guard lock(m_mutex);
    const int type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_REQUEST) {
        ++m_requests;
        m_firstRequest = m_firstRequest.value_or(now);
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    } else if (type == XCB_KEY_PRESS) {
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        if (key.detail == std::to_underlying(Key::V) && (key.state & XCB_MOD_MASK_CONTROL) != 0) {
            m_pasteKey = now;
            m_changed.notify_all();
        }
    }
}

// In one piece: the display server takes requests of 16 MB.
void OtherProgram::answer(const xcb_selection_request_event_t& request) {
    xcb_connection_t* const x = m_connection.get();
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.time = request.time;
    notify.property = request.property;
    std::vector<xcb_atom_t> offered;
    for (const QByteArray& target : std::as_const(m_targets)) {
        offered.push_back(m_atoms.atom(target));
    }
    if (request.target == m_atoms.atom("TARGETS")) {
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            XCB_ATOM_ATOM, 32, std::uint32_t(offered.size()), offered.data());
    } else if (std::ranges::find(offered, request.target) != offered.end()) {
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            request.target, 8, std::uint32_t(m_bytes.size()), m_bytes.constData());
    } else {
        notify.property = XCB_ATOM_NONE;
    }
    xcb_send_event(x, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
    xcb_flush(x);
}

}  // namespace quillo::bench
