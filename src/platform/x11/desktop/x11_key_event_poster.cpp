// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/x11_key_event_poster.h"

#include <linux/input-event-codes.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/x11/desktop/xkb_protocol.h"

namespace quillo::x11 {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr xcb_keycode_t kUsualShiftKey = KEY_LEFTSHIFT + 8;
constexpr xcb_keycode_t kUsualControlKey = KEY_LEFTCTRL + 8;
// A program asks for the symbol of a key when it gets to the event; until then it must be there.
constexpr auto kLentKeyLifetime = 500ms;

bool isDown(const xcb_query_keymap_reply_t& keymap, xcb_keycode_t key) {
    return (keymap.keys[key / 8] & (1U << (key % 8))) != 0;
}

PasteChord chordFor(PasteKeys keys, xcb_keycode_t key, const ModifierKeys& modifiers) {
    const xcb_keycode_t shift = modifiers.keyOf(XCB_MAP_INDEX_SHIFT, kUsualShiftKey);
    const xcb_keycode_t control = modifiers.keyOf(XCB_MAP_INDEX_CONTROL, kUsualControlKey);
    switch (keys) {
        case PasteKeys::ControlV:
            return {{control}, key};
        case PasteKeys::ControlShiftV:
            return {{control, shift}, key};
        case PasteKeys::ShiftInsert:
            return {{shift}, key};
    }
    return {};
}

}  // namespace

QList<KeyStep> stepsForChord(const PasteChord& chord, const QList<xcb_keycode_t>& heldModifiers,
                             bool isKeyDown) {
    QList<KeyStep> steps;
    if (isKeyDown) {
        steps.append({chord.key, false});
    }
    for (const xcb_keycode_t held : heldModifiers) {
        steps.append({held, false});
    }
    for (const xcb_keycode_t modifier : chord.modifiers) {
        steps.append({modifier, true});
    }
    steps.append({chord.key, true});
    steps.append({chord.key, false});
    for (auto modifier = chord.modifiers.crbegin(); modifier != chord.modifiers.crend();
         ++modifier) {
        steps.append({*modifier, false});
    }
    for (const xcb_keycode_t held : heldModifiers) {
        steps.append({held, true});
    }
    return steps;
}

Result<std::unique_ptr<X11KeyEventPoster>> X11KeyEventPoster::create(
    const QByteArray& displayName) {
    Result<Connection> connection = connectToServer(displayName);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    const xcb_query_extension_reply_t* xtest =
        xcb_get_extension_data(connection->get(), &xcb_test_id);
    if (xtest == nullptr || xtest->present == 0) {
        return failure(ErrorKind::Unsupported, u"the X server has no XTEST"_s);
    }
    Result<KeyboardLayout> layout = KeyboardLayout::create(connection->get());
    if (!layout) {
        return std::unexpected(layout.error());
    }
    return std::unique_ptr<X11KeyEventPoster>(
        new X11KeyEventPoster(std::move(*connection), std::move(*layout)));
}

X11KeyEventPoster::X11KeyEventPoster(Connection connection, KeyboardLayout layout)
    : m_connection(std::move(connection)), m_layout(std::move(layout)) {
    m_returnTimer.setSingleShot(true);
    QObject::connect(&m_returnTimer, &QTimer::timeout, &m_returnTimer,
                     [this] { returnLentKeys(); });
}

X11KeyEventPoster::~X11KeyEventPoster() {
    returnLentKeys();
    waitForServer(m_connection.get());
}

Result<void> X11KeyEventPoster::postPaste(PasteKeys keys) {
    if (const Result<void> refreshed = m_layout.refresh(); !refreshed) {
        return refreshed;
    }
    const Result<ModifierKeys> modifiers = readModifierKeys(m_connection.get());
    if (!modifiers) {
        return std::unexpected(modifiers.error());
    }
    const Result<xcb_keycode_t> key =
        keyFor(keys == PasteKeys::ShiftInsert ? XKB_KEY_Insert : XKB_KEY_v);
    if (!key) {
        return std::unexpected(key.error());
    }
    return post(chordFor(keys, *key, *modifiers), *modifiers);
}

Result<xcb_keycode_t> X11KeyEventPoster::keyFor(xkb_keysym_t symbol) {
    // A lent key is in the layout too, but not for ever: its time starts anew.
    if (m_lentKeys.contains(symbol)) {
        m_returnTimer.start(kLentKeyLifetime);
        return m_lentKeys.value(symbol);
    }
    if (const std::optional<xcb_keycode_t> key = m_layout.keyFor(symbol)) {
        return *key;
    }
    return lendKey(symbol);
}

Result<xcb_keycode_t> X11KeyEventPoster::lendKey(xkb_keysym_t symbol) {
    const std::optional<xcb_keycode_t> key = m_layout.unusedKey();
    if (!key) {
        return failure(ErrorKind::Unsupported, u"the keyboard layout has no key to paste with"_s);
    }
    mapKey(*key, symbol);
    m_lentKeys.insert(symbol, *key);
    m_returnTimer.start(kLentKeyLifetime);
    return *key;
}

void X11KeyEventPoster::returnLentKeys() {
    for (const xcb_keycode_t key : std::as_const(m_lentKeys)) {
        mapKey(key, XKB_KEY_NoSymbol);
    }
    m_lentKeys.clear();
    xcb_flush(m_connection.get());
}

void X11KeyEventPoster::mapKey(xcb_keycode_t key, xkb_keysym_t symbol) {
    const xcb_keysym_t symbols[] = {symbol, xkb_keysym_to_upper(symbol)};
    xcb_change_keyboard_mapping(m_connection.get(), 1, key, 2, symbols);
}

void X11KeyEventPoster::setLockedModifiers(uint8_t affected, uint8_t locked) {
    if (affected != 0) {
        xcb_xkb_latch_lock_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD, affected, locked, 0,
                                 0, 0, 0, 0);
    }
}

Result<void> X11KeyEventPoster::post(const PasteChord& chord, const ModifierKeys& modifiers) {
    xcb_connection_t* connection = m_connection.get();
    const XcbPtr<xcb_query_keymap_reply_t> down(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    if (!down) {
        return failure(ErrorKind::Failed, u"the X server does not tell which keys are held"_s);
    }
    QList<xcb_keycode_t> held = modifiers.heldModifierKeys();
    held.removeIf([&down](xcb_keycode_t key) { return !isDown(*down, key); });
    // Caps Lock would make another letter of the key. Num Lock changes nothing here.
    const auto numLock = uint8_t(modifiers.numLock | modifiers.scrollLock);
    const auto locked = uint8_t(m_layout.lockedModifiers() & ~numLock);

    setLockedModifiers(locked, 0);
    for (const KeyStep& step : stepsForChord(chord, held, isDown(*down, chord.key))) {
        xcb_test_fake_input(connection, step.isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, step.key,
                            XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    }
    setLockedModifiers(locked, locked);
    if (!waitForServer(connection)) {
        return failure(ErrorKind::Failed, u"the connection to the X server is broken"_s);
    }
    return {};
}

}  // namespace quillo::x11
