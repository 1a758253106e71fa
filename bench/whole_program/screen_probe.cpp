// SPDX-License-Identifier: MIT
#include "whole_program/screen_probe.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <thread>
#include <utility>
#include <vector>

namespace quillo::bench {
namespace {

using x11::XcbPtr;

// Across the head, the upper and the lower body and the foot of the cards.
constexpr std::array<int, 4> kLineTops = {70, 140, 230, 274};
constexpr int kBodyLine = 1;
constexpr int kFirstCardMiddle = 16 + 140;
constexpr int kBytesPerPixel = 4;
constexpr std::uint8_t kWheelDown = 5;
// Leaves the display server time for the program.
constexpr std::chrono::microseconds kBetweenLooks{50};
constexpr std::chrono::seconds kLongestWait{3};

x11::Connection connected() {
    auto connection = x11::connectToServer();
    if (!connection) {
        qFatal("%s", qUtf8Printable(connection.error().text));
    }
    return std::move(*connection);
}

}  // namespace

ScreenProbe::ScreenProbe() : m_connection(connected()) {}

void ScreenProbe::fake(std::uint8_t type, std::uint8_t detail) {
    xcb_test_fake_input(m_connection.get(), type, detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

Moment ScreenProbe::press(std::initializer_list<Key> keys) {
    for (const Key key : keys) {
        fake(XCB_KEY_PRESS, std::to_underlying(key));
    }
    const Moment now = std::chrono::steady_clock::now();
    xcb_flush(m_connection.get());
    return now;
}

void ScreenProbe::release(std::initializer_list<Key> keys) {
    for (const Key key : keys) {
        fake(XCB_KEY_RELEASE, std::to_underlying(key));
    }
    xcb_flush(m_connection.get());
}

void ScreenProbe::movePointer(QPoint to) {
    xcb_test_fake_input(m_connection.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME,
                        m_connection.root(), std::int16_t(to.x()), std::int16_t(to.y()), 0);
    xcb_flush(m_connection.get());
}

Moment ScreenProbe::turnWheelDown() {
    fake(XCB_BUTTON_PRESS, kWheelDown);
    fake(XCB_BUTTON_RELEASE, kWheelDown);
    const Moment now = std::chrono::steady_clock::now();
    xcb_flush(m_connection.get());
    return now;
}

bool ScreenProbe::isVisibleWithName(xcb_window_t window, const QByteArray& name) {
    xcb_connection_t* const x = m_connection.get();
    const auto nameCookie =
        xcb_get_property(x, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 64);
    const auto stateCookie = xcb_get_window_attributes(x, window);
    const XcbPtr<xcb_get_property_reply_t> text(xcb_get_property_reply(x, nameCookie, nullptr));
    const XcbPtr<xcb_get_window_attributes_reply_t> state(
        xcb_get_window_attributes_reply(x, stateCookie, nullptr));
    return text && state && state->map_state == XCB_MAP_STATE_VIEWABLE &&
           QByteArrayView(static_cast<const char*>(xcb_get_property_value(text.get())),
                          xcb_get_property_value_length(text.get())) == name;
}

std::optional<QRect> ScreenProbe::window(const QByteArray& name) {
    xcb_connection_t* const x = m_connection.get();
    std::vector<xcb_window_t> waiting = {m_connection.root()};
    while (!waiting.empty()) {
        const xcb_window_t next = waiting.back();
        waiting.pop_back();
        if (isVisibleWithName(next, name)) {
            const XcbPtr<xcb_get_geometry_reply_t> size(
                xcb_get_geometry_reply(x, xcb_get_geometry(x, next), nullptr));
            const XcbPtr<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
                x, xcb_translate_coordinates(x, next, m_connection.root(), 0, 0), nullptr));
            if (size && place) {
                return QRect(place->dst_x, place->dst_y, size->width, size->height);
            }
        }
        const XcbPtr<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(x, xcb_query_tree(x, next), nullptr));
        if (tree) {
            const xcb_window_t* children = xcb_query_tree_children(tree.get());
            waiting.insert(waiting.end(), children,
                           children + xcb_query_tree_children_length(tree.get()));
        }
    }
    return std::nullopt;
}

QByteArray ScreenProbe::lines(const QRect& panel) {
    std::array<xcb_get_image_cookie_t, kLineTops.size()> cookies{};
    for (size_t i = 0; i < kLineTops.size(); ++i) {
        cookies[i] =
            xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_connection.root(),
                          std::int16_t(panel.x()), std::int16_t(panel.y() + kLineTops[i]),
                          std::uint16_t(panel.width()), 1, ~0U);
    }
    QByteArray pixels;
    for (const auto cookie : cookies) {
        const XcbPtr<xcb_get_image_reply_t> reply(
            xcb_get_image_reply(m_connection.get(), cookie, nullptr));
        if (!reply) {
            qFatal("The screen cannot be read");
        }
        pixels.append(reinterpret_cast<const char*>(xcb_get_image_data(reply.get())),
                      xcb_get_image_data_length(reply.get()));
    }
    return pixels;
}

std::uint32_t ScreenProbe::firstCardColor(const QByteArray& lines, const QRect& panel) {
    const qsizetype at = qsizetype{kBytesPerPixel} * (kBodyLine * panel.width() + kFirstCardMiddle);
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, lines.constData() + at, sizeof pixel);
    return pixel & 0xffffffU;
}

std::optional<ScreenProbe::Frames> ScreenProbe::watch(const QRect& panel, const QByteArray& before,
                                                      std::chrono::milliseconds still) {
    struct Frame {
        Moment seen;
        QByteArray pixels;
    };
    std::vector<Frame> changes;
    Moment end = std::chrono::steady_clock::now() + kLongestWait;
    while (std::chrono::steady_clock::now() < end) {
        QByteArray pixels = lines(panel);
        const Moment now = std::chrono::steady_clock::now();
        if (pixels != (changes.empty() ? before : changes.back().pixels)) {
            changes.push_back({now, std::move(pixels)});
            end = now + still;
        }
        std::this_thread::sleep_for(kBetweenLooks);
    }
    if (changes.empty() || changes.back().pixels == before) {
        return std::nullopt;
    }
    const auto first = std::ranges::find(changes, changes.back().pixels, &Frame::pixels);
    return Frames{changes.front().seen, first->seen, changes.back().pixels};
}

double ScreenProbe::roundTripMs() {
    const Moment begin = std::chrono::steady_clock::now();
    const XcbPtr<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
    return millisecondsBetween(begin, std::chrono::steady_clock::now());
}

}  // namespace quillo::bench
