// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/modifier_keys.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <initializer_list>
#include <span>

namespace quillo::x11 {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t kFirstFreeModifier = XCB_MAP_INDEX_1;

/// The symbols of every key, in every group and level.
class KeySymbols final {
public:
    KeySymbols(xcb_connection_t* connection, xcb_get_keyboard_mapping_cookie_t cookie)
        : m_first(xcb_get_setup(connection)->min_keycode),
          m_reply(xcb_get_keyboard_mapping_reply(connection, cookie, nullptr)) {}

    [[nodiscard]] bool isValid() const { return m_reply != nullptr; }

    [[nodiscard]] bool has(xcb_keycode_t key, std::initializer_list<xcb_keysym_t> wanted) const {
        const size_t width = m_reply->keysyms_per_keycode;
        const size_t total = size_t(xcb_get_keyboard_mapping_keysyms_length(m_reply.get()));
        const size_t start = size_t(key - m_first) * width;
        if (key < m_first || start + width > total) {
            return false;
        }
        const std::span symbols(xcb_get_keyboard_mapping_keysyms(m_reply.get()) + start, width);
        return std::ranges::find_first_of(symbols, wanted) != symbols.end();
    }

private:
    xcb_keycode_t m_first;
    XcbPtr<xcb_get_keyboard_mapping_reply_t> m_reply;
};

void readKeys(ModifierKeys& result, xcb_get_modifier_mapping_reply_t* reply) {
    const size_t width = reply->keycodes_per_modifier;
    const std::span codes(xcb_get_modifier_mapping_keycodes(reply),
                          size_t(xcb_get_modifier_mapping_keycodes_length(reply)));
    for (size_t modifier = 0; modifier < result.keys.size(); ++modifier) {
        for (size_t i = modifier * width; i < (modifier + 1) * width && i < codes.size(); ++i) {
            if (codes[i] != 0) {
                result.keys[modifier].append(codes[i]);
            }
        }
    }
}

uint16_t bitsOf(const ModifierKeys& modifiers, const KeySymbols& symbols,
                std::initializer_list<xcb_keysym_t> wanted) {
    for (size_t modifier = kFirstFreeModifier; modifier < modifiers.keys.size(); ++modifier) {
        const bool isIt = std::ranges::any_of(
            modifiers.keys[modifier], [&](xcb_keycode_t key) { return symbols.has(key, wanted); });
        if (isIt) {
            return uint16_t(1U << modifier);
        }
    }
    return 0;
}

}  // namespace

uint16_t ModifierKeys::lockBits() const {
    return uint16_t(XCB_MOD_MASK_LOCK | numLock | scrollLock);
}

uint16_t ModifierKeys::heldBits() const {
    return uint16_t(0xff & ~lockBits());
}

QList<uint16_t> ModifierKeys::lockCombinations() const {
    QList<uint16_t> result{0};
    for (const uint16_t lock : {uint16_t(XCB_MOD_MASK_LOCK), numLock, scrollLock}) {
        const QList<uint16_t> without = result;
        for (const uint16_t combination : without) {
            const auto with = uint16_t(combination | lock);
            if (!result.contains(with)) {
                result.append(with);
            }
        }
    }
    return result;
}

QList<xcb_keycode_t> ModifierKeys::heldModifierKeys() const {
    QList<xcb_keycode_t> result;
    for (size_t modifier = 0; modifier < keys.size(); ++modifier) {
        if ((heldBits() & (1U << modifier)) != 0) {
            result += keys[modifier];
        }
    }
    return result;
}

xcb_keycode_t ModifierKeys::keyOf(size_t modifier, xcb_keycode_t fallback) const {
    return keys[modifier].isEmpty() ? fallback : keys[modifier].constFirst();
}

Result<ModifierKeys> readModifierKeys(xcb_connection_t* connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const auto symbolsCookie = xcb_get_keyboard_mapping(
        connection, setup->min_keycode, uint8_t(setup->max_keycode - setup->min_keycode + 1));
    const auto modifiersCookie = xcb_get_modifier_mapping(connection);
    const KeySymbols symbols(connection, symbolsCookie);
    const XcbPtr<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifiersCookie, nullptr));
    if (!symbols.isValid() || !modifiers) {
        return failure(ErrorKind::Failed, u"the X server does not tell its modifiers"_s);
    }
    ModifierKeys result;
    readKeys(result, modifiers.get());
    result.super = bitsOf(result, symbols, {XKB_KEY_Super_L, XKB_KEY_Super_R});
    result.alt = bitsOf(result, symbols, {XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    if (result.alt == 0) {
        result.alt = bitsOf(result, symbols, {XKB_KEY_Meta_L, XKB_KEY_Meta_R});
    }
    result.numLock = bitsOf(result, symbols, {XKB_KEY_Num_Lock});
    result.scrollLock = bitsOf(result, symbols, {XKB_KEY_Scroll_Lock});
    return result;
}

}  // namespace quillo::x11
