// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "platform/pasteboard.h"
#include "platform/x11/pasteboard/pasteboard_limits.h"

namespace quillo::x11 {

/// How the clipboard came to have no owner.
enum class OwnerLoss {
    Cleared,  ///< The owner gave it up on purpose, as password managers do.
    Quit,     ///< The owner's window or connection ended.
};

/// Decides what an event means for the pasteboard: when the change count moves, and when kept
/// contents are offered in place of a program that quit. Has no side effects.
class ClipboardKeeper final {
public:
    /// Contents to be offered again, in vain if somebody owns the clipboard later than that.
    struct Restoration {
        KeptContents contents;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
    };
    struct Outcome {
        bool hasChanged = false;  ///< The change count moved.
        std::optional<Restoration> restoration;
    };

    ClipboardKeeper(std::chrono::milliseconds grace, xcb_window_t owner)
        : m_grace(grace), m_owner(owner) {}

    [[nodiscard]] Outcome ownedBy(xcb_window_t owner, xcb_timestamp_t since);

    /// An empty clipboard is believed only after a grace time: some programs give it up for a
    /// moment with each copy.
    void lost(OwnerLoss how, xcb_timestamp_t when, TimePoint now);

    [[nodiscard]] std::optional<TimePoint> deadline() const;
    [[nodiscard]] Outcome expire(TimePoint now);

    /// Contents that come after their program quit are still offered, if nobody copied since.
    [[nodiscard]] Outcome settle(qint64 count, std::optional<KeptContents> contents);

    [[nodiscard]] qint64 count() const { return m_count; }
    /// None while the clipboard is empty or in its grace time.
    [[nodiscard]] xcb_window_t owner() const {
        return m_loss ? xcb_window_t{XCB_WINDOW_NONE} : m_owner;
    }
    [[nodiscard]] xcb_timestamp_t since() const { return m_since; }
    [[nodiscard]] bool isSettled() const { return m_isSettled; }
    [[nodiscard]] bool hasKept() const { return m_kept.has_value(); }

private:
    struct Loss {
        OwnerLoss how = OwnerLoss::Cleared;
        xcb_timestamp_t when = XCB_CURRENT_TIME;
        TimePoint deadline;
    };
    struct LateChance {
        qint64 count = 0;
        xcb_timestamp_t when = XCB_CURRENT_TIME;
    };

    void startNewCount(xcb_window_t owner, xcb_timestamp_t since);

    std::chrono::milliseconds m_grace;
    qint64 m_count = 1;
    xcb_window_t m_owner;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
    bool m_isSettled = false;
    std::optional<KeptContents> m_kept;
    std::optional<Loss> m_loss;
    std::optional<LateChance> m_lateChance;
};

}  // namespace quillo::x11
