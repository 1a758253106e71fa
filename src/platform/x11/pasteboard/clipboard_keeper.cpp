// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/clipboard_keeper.h"

#include <utility>

namespace quillo::x11 {

ClipboardKeeper::Outcome ClipboardKeeper::ownedBy(xcb_window_t owner, xcb_timestamp_t since) {
    startNewCount(owner, since);
    return {true, std::nullopt};
}

void ClipboardKeeper::lost(OwnerLoss how, xcb_timestamp_t when, TimePoint now) {
    if (m_owner != XCB_WINDOW_NONE) {
        m_loss = Loss{how, when, now + m_grace};
    }
}

std::optional<TimePoint> ClipboardKeeper::deadline() const {
    return m_loss ? std::optional(m_loss->deadline) : std::nullopt;
}

ClipboardKeeper::Outcome ClipboardKeeper::expire(TimePoint now) {
    if (!m_loss || m_loss->deadline > now) {
        return {};
    }
    const Loss loss = *std::exchange(m_loss, std::nullopt);
    if (loss.how == OwnerLoss::Quit && m_kept) {
        // The count moves when the contents are offered.
        m_owner = XCB_WINDOW_NONE;
        return {false, Restoration{*std::exchange(m_kept, std::nullopt), loss.when}};
    }
    const bool mayStillSettle = loss.how == OwnerLoss::Quit && !m_isSettled;
    const LateChance chance{m_count, loss.when};
    startNewCount(XCB_WINDOW_NONE, loss.when);
    if (mayStillSettle) {
        m_lateChance = chance;
    }
    return {true, std::nullopt};
}

ClipboardKeeper::Outcome ClipboardKeeper::settle(qint64 count,
                                                 std::optional<KeptContents> contents) {
    if (m_lateChance && m_lateChance->count == count) {
        const LateChance chance = *std::exchange(m_lateChance, std::nullopt);
        return contents ? Outcome{false, Restoration{std::move(*contents), chance.when}}
                        : Outcome{};
    }
    if (count == m_count) {
        m_isSettled = true;
        m_kept = std::move(contents);
    }
    return {};
}

void ClipboardKeeper::startNewCount(xcb_window_t owner, xcb_timestamp_t since) {
    ++m_count;
    m_owner = owner;
    m_since = since;
    m_isSettled = false;
    m_kept.reset();
    m_loss.reset();
    m_lateChance.reset();
}

}  // namespace quillo::x11
