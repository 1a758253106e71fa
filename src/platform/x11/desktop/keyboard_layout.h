// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>

#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

/// The keyboard's layouts and which one is in use, as the server has them. The layouts are read
/// again only after the server said that they changed, since reading them takes milliseconds.
class KeyboardLayout final {
public:
    /// Unsupported where the server has no XKB.
    [[nodiscard]] static Result<KeyboardLayout> create(xcb_connection_t* connection);

    /// Takes in what changed; one round trip when nothing did. The events of the connection are
    /// used up.
    [[nodiscard]] Result<void> refresh();

    /// The key that gives the symbol without any modifier, in the layout in use or else in
    /// another one.
    [[nodiscard]] std::optional<xcb_keycode_t> keyFor(xkb_keysym_t symbol) const;

    /// A key that gives nothing at all.
    [[nodiscard]] std::optional<xcb_keycode_t> unusedKey() const;

    /// The modifier bits that are locked, Caps Lock for one.
    [[nodiscard]] uint8_t lockedModifiers() const;

private:
    template <auto function>
    struct Release {
        void operator()(auto* object) const { function(object); }
    };
    using ContextPtr = std::unique_ptr<xkb_context, Release<xkb_context_unref>>;
    using KeymapPtr = std::unique_ptr<xkb_keymap, Release<xkb_keymap_unref>>;
    using StatePtr = std::unique_ptr<xkb_state, Release<xkb_state_unref>>;

    KeyboardLayout() = default;

    void selectChanges();
    [[nodiscard]] bool hasChanged();
    [[nodiscard]] bool givesSymbol(xkb_keycode_t key, xkb_layout_index_t layout,
                                   xkb_keysym_t symbol) const;

    xcb_connection_t* m_connection = nullptr;
    uint8_t m_firstEvent = 0;
    int32_t m_device = 0;
    ContextPtr m_context;
    KeymapPtr m_keymap;
    StatePtr m_state;
};

}  // namespace quillo::x11
