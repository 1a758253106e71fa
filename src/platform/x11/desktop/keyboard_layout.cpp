// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/keyboard_layout.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>

#include "platform/x11/desktop/xkb_protocol.h"

namespace quillo::x11 {

using namespace Qt::StringLiterals;

namespace {

// The core protocol, by which keys are posted and lent, knows no higher keycode.
constexpr xkb_keycode_t kHighestKeycode = 255;

}  // namespace

Result<KeyboardLayout> KeyboardLayout::create(xcb_connection_t* connection) {
    KeyboardLayout layout;
    layout.m_connection = connection;
    layout.m_context.reset(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const int hasExtension = xkb_x11_setup_xkb_extension(
        connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
        XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &layout.m_firstEvent, nullptr);
    if (hasExtension == 0 || !layout.m_context) {
        return failure(ErrorKind::Unsupported, u"the X server has no XKB"_s);
    }
    layout.selectChanges();
    if (const Result<void> read = layout.refresh(); !read) {
        return std::unexpected(read.error());
    }
    return layout;
}

void KeyboardLayout::selectChanges() {
    constexpr uint16_t events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr uint16_t parts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;
    xcb_xkb_select_events(m_connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts,
                          nullptr);
}

bool KeyboardLayout::hasChanged() {
    bool result = false;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        const auto type = uint8_t(event->response_type & 0x7f);
        result = result || type == m_firstEvent || type == XCB_MAPPING_NOTIFY;
    }
    return result;
}

Result<void> KeyboardLayout::refresh() {
    m_state.reset();
    if (hasChanged() || !m_keymap) {
        m_device = xkb_x11_get_core_keyboard_device_id(m_connection);
        m_keymap.reset(xkb_x11_keymap_new_from_device(m_context.get(), m_connection, m_device,
                                                      XKB_KEYMAP_COMPILE_NO_FLAGS));
    }
    if (m_keymap) {
        m_state.reset(xkb_x11_state_new_from_device(m_keymap.get(), m_connection, m_device));
    }
    if (!m_state) {
        m_keymap.reset();
        return failure(ErrorKind::Failed, u"the X server does not tell its keyboard layout"_s);
    }
    return {};
}

bool KeyboardLayout::givesSymbol(xkb_keycode_t key, xkb_layout_index_t layout,
                                 xkb_keysym_t symbol) const {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(m_keymap.get(), key, layout, 0, &symbols);
    return count == 1 && symbols[0] == symbol;
}

std::optional<xcb_keycode_t> KeyboardLayout::keyFor(xkb_keysym_t symbol) const {
    const xkb_keycode_t lowest = xkb_keymap_min_keycode(m_keymap.get());
    const xkb_keycode_t highest = std::min(xkb_keymap_max_keycode(m_keymap.get()), kHighestKeycode);
    for (xkb_keycode_t key = lowest; key <= highest; ++key) {
        const xkb_layout_index_t layout = xkb_state_key_get_layout(m_state.get(), key);
        if (layout != XKB_LAYOUT_INVALID && givesSymbol(key, layout, symbol)) {
            return xcb_keycode_t(key);
        }
    }
    for (xkb_keycode_t key = lowest; key <= highest; ++key) {
        const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(m_keymap.get(), key);
        for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
            if (givesSymbol(key, layout, symbol)) {
                return xcb_keycode_t(key);
            }
        }
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> KeyboardLayout::unusedKey() const {
    const xkb_keycode_t lowest = xkb_keymap_min_keycode(m_keymap.get());
    for (xkb_keycode_t key = kHighestKeycode; key >= lowest; --key) {
        if (xkb_keymap_num_layouts_for_key(m_keymap.get(), key) == 0) {
            return xcb_keycode_t(key);
        }
    }
    return std::nullopt;
}

uint8_t KeyboardLayout::lockedModifiers() const {
    return uint8_t(xkb_state_serialize_mods(m_state.get(), XKB_STATE_MODS_LOCKED));
}

}  // namespace quillo::x11
