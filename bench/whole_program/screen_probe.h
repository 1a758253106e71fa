// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QRect>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/x11/xcb_support.h"
#include "whole_program/samples.h"

namespace quillo::bench {

/// Positions on the keyboard: evdev codes plus eight.
enum class Key : std::uint8_t {
    Escape = 9,
    Three = 12,
    BackSpace = 22,
    P = 33,
    Return = 36,
    Control = 37,
    Shift = 50,
    V = 55,
    Space = 65,
    Super = 133
};

/// A person before the screen: presses keys, turns the wheel and sees what the panel's cards
/// look like. Uses XTEST and small reads of the root window's pixels.
class ScreenProbe final {
public:
    ScreenProbe();

    /// Presses one after the other, flushes, and gives the moment just before the flush.
    Moment press(std::initializer_list<Key> keys);
    void release(std::initializer_list<Key> keys);
    void movePointer(QPoint to);
    Moment turnWheelDown();

    /// The visible window of that name; none when there is none.
    [[nodiscard]] std::optional<QRect> window(const QByteArray& name);

    /// The pixels of a few lines across the panel's cards, 32 bits each, in one round trip.
    [[nodiscard]] QByteArray lines(const QRect& panel);
    /// The colour, 0xrrggbb, in the body of the first card of such lines.
    [[nodiscard]] static std::uint32_t firstCardColor(const QByteArray& lines, const QRect& panel);

    struct Frames {
        Moment firstChange;
        Moment firstLikeLast;
        QByteArray last;
    };
    /// Looks at the lines until they have changed and then stood still for that time, and says
    /// when they first differed from `before` and when they first looked as they do at the end.
    /// None when they do not change within three seconds.
    [[nodiscard]] std::optional<Frames> watch(const QRect& panel, const QByteArray& before,
                                              std::chrono::milliseconds still);

    /// A round trip to the display server.
    double roundTripMs();

private:
    void fake(std::uint8_t type, std::uint8_t detail);
    [[nodiscard]] bool isVisibleWithName(xcb_window_t window, const QByteArray& name);

    x11::Connection m_connection;
};

}  // namespace quillo::bench
