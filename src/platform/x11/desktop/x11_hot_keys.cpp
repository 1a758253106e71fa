// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/x11_hot_keys.h"

#include <QPointer>
#include <algorithm>
#include <utility>

#include "base/logging.h"
#include "platform/x11/desktop/xkb_protocol.h"

namespace quillo::x11 {

using namespace Qt::StringLiterals;

namespace {

QUILLO_LOG_CATEGORY(lcHotKeys, "HotKeys")

// The keycodes of the X server are the kernel's, shifted.
constexpr quint32 kEvdevOffset = 8;
// Longer than the pause between two repeats on any keyboard.
constexpr xcb_timestamp_t kLongestRepeatPause = 1000;

}  // namespace

class X11HotKeys::Registration final : public HotKeyRegistration {
public:
    Registration(X11HotKeys* owner, quint64 id) : m_owner(owner), m_id(id) {}
    ~Registration() override {
        if (m_owner) {
            m_owner->unregister(m_id);
        }
    }

private:
    QPointer<X11HotKeys> m_owner;
    quint64 m_id;
};

Result<std::unique_ptr<X11HotKeys>> X11HotKeys::create(const QByteArray& displayName) {
    Result<Connection> connection = connectToServer(displayName);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    Result<ModifierKeys> modifiers = readModifierKeys(connection->get());
    if (!modifiers) {
        return std::unexpected(modifiers.error());
    }
    return std::unique_ptr<X11HotKeys>(
        new X11HotKeys(std::move(*connection), std::move(*modifiers)));
}

X11HotKeys::X11HotKeys(Connection connection, ModifierKeys modifiers)
    : m_connection(std::move(connection)),
      m_modifiers(std::move(modifiers)),
      m_notifier(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &X11HotKeys::readEvents);
    watchKeyboard();
    readEventsSoon();
}

void X11HotKeys::watchKeyboard() {
    xcb_connection_t* connection = m_connection.get();
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        qCWarning(lcHotKeys) << "the X server has no XKB: the repeats of a held key will count";
        return;
    }
    m_firstXkbEvent = extension->first_event;
    const XcbPtr<xcb_xkb_use_extension_reply_t> used(
        xcb_xkb_use_extension_reply(connection, xcb_xkb_use_extension(connection, 1, 0), nullptr));
    // A held key then gives presses only, until its one release.
    constexpr uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const XcbPtr<xcb_xkb_per_client_flags_reply_t> flags(
        xcb_xkb_per_client_flags_reply(connection,
                                       xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD,
                                                                detectable, detectable, 0, 0, 0),
                                       nullptr));
    constexpr uint16_t events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts,
                          nullptr);
    xcb_flush(connection);
}

Result<std::unique_ptr<HotKeyRegistration>> X11HotKeys::registerHotKey(
    HotKeyChord chord, std::function<void()> pressed) {
    Result<HotKey> hotKey = resolve(chord);
    if (!hotKey) {
        return std::unexpected(hotKey.error());
    }
    // The server would let the same client replace its own grab without a word.
    const bool isTaken = std::ranges::any_of(
        m_hotKeys, [chord](const HotKey& other) { return other.chord == chord; });
    if (isTaken) {
        return failure(ErrorKind::Busy, u"the shortcut is registered already"_s);
    }
    if (!m_isSuspended) {
        if (const Result<void> grabbed = grab(*hotKey); !grabbed) {
            return std::unexpected(grabbed.error());
        }
    }
    hotKey->pressed = std::move(pressed);
    const quint64 id = m_nextId++;
    m_hotKeys.insert(id, *hotKey);
    return std::make_unique<Registration>(this, id);
}

Result<X11HotKeys::HotKey> X11HotKeys::resolve(HotKeyChord chord) const {
    const quint32 evdev = evdevFromVirtualKeyCode(chord.keyCode);
    const xcb_setup_t* setup = xcb_get_setup(m_connection.get());
    const quint32 key = evdev + kEvdevOffset;
    const bool isKnown = evdev != 0 && key >= setup->min_keycode && key <= setup->max_keycode;
    const bool hasModifiers =
        ((chord.modifiers & kCommandModifier) == 0 || m_modifiers.super != 0) &&
        ((chord.modifiers & kOptionModifier) == 0 || m_modifiers.alt != 0);
    if (!isKnown || !hasModifiers) {
        return failure(ErrorKind::Unsupported, u"no key of this keyboard gives the shortcut"_s);
    }
    const auto bits = [chord](quint32 wanted, uint16_t mask) -> unsigned {
        return (chord.modifiers & wanted) != 0 ? mask : 0U;
    };
    HotKey result;
    result.chord = chord;
    result.key = xcb_keycode_t(key);
    result.modifiers = uint16_t(
        bits(kShiftModifier, XCB_MOD_MASK_SHIFT) | bits(kControlModifier, XCB_MOD_MASK_CONTROL) |
        bits(kOptionModifier, m_modifiers.alt) | bits(kCommandModifier, m_modifiers.super));
    return result;
}

Result<void> X11HotKeys::grab(const HotKey& hotKey) {
    xcb_connection_t* connection = m_connection.get();
    const QList<uint16_t> locks = m_modifiers.lockCombinations();
    QList<xcb_void_cookie_t> cookies;
    for (const uint16_t lock : locks) {
        cookies.append(xcb_grab_key_checked(connection, 0, m_connection.root(),
                                            uint16_t(hotKey.modifiers | lock), hotKey.key,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    QList<uint16_t> grabbed;
    for (qsizetype i = 0; i < cookies.size(); ++i) {
        const XcbPtr<xcb_generic_error_t> error(xcb_request_check(connection, cookies[i]));
        if (!error) {
            grabbed.append(locks[i]);
        }
    }
    readEventsSoon();
    if (grabbed.size() == locks.size()) {
        return {};
    }
    ungrab(hotKey, grabbed);
    waitForServer();
    return failure(ErrorKind::Busy, u"another program owns the shortcut"_s);
}

void X11HotKeys::ungrab(const HotKey& hotKey, const QList<uint16_t>& lockCombinations) {
    for (const uint16_t lock : lockCombinations) {
        xcb_ungrab_key(m_connection.get(), hotKey.key, m_connection.root(),
                       uint16_t(hotKey.modifiers | lock));
    }
}

void X11HotKeys::waitForServer() {
    // Keys are posted, and given to other programs, over other connections: only what the server
    // has done is done for them too.
    x11::waitForServer(m_connection.get());
    readEventsSoon();
}

void X11HotKeys::ungrabAll() {
    for (const HotKey& hotKey : std::as_const(m_hotKeys)) {
        ungrab(hotKey, m_modifiers.lockCombinations());
    }
}

void X11HotKeys::grabAll() {
    for (HotKey& hotKey : m_hotKeys) {
        // The keyboard may have changed, and with it what gives the chord.
        Result<HotKey> resolved = resolve(hotKey.chord);
        if (resolved) {
            hotKey.modifiers = resolved->modifiers;
            hotKey.key = resolved->key;
        }
        if (const Result<void> grabbed =
                resolved ? grab(hotKey) : std::unexpected(resolved.error());
            !grabbed) {
            qCWarning(lcHotKeys).noquote() << "a shortcut was lost:" << grabbed.error().text;
        }
    }
}

void X11HotKeys::unregister(quint64 id) {
    const auto found = m_hotKeys.constFind(id);
    if (found == m_hotKeys.cend()) {
        return;
    }
    if (!m_isSuspended) {
        ungrab(*found, m_modifiers.lockCombinations());
        waitForServer();
    }
    m_hotKeys.erase(found);
}

void X11HotKeys::setSuspended(bool suspended) {
    if (m_isSuspended == suspended) {
        return;
    }
    m_isSuspended = suspended;
    if (!suspended) {
        grabAll();
        forgetReleasedKeys();
        return;
    }
    ungrabAll();
    // While a shortcut's key is down its grab holds the keyboard, and synthetic keys would come
    // to us; given up, its release goes elsewhere.
    xcb_ungrab_keyboard(m_connection.get(), XCB_CURRENT_TIME);
    waitForServer();
    for (HeldKey& key : m_held) {
        key.releaseMayBeMissed = true;
    }
}

void X11HotKeys::forgetReleasedKeys() {
    if (m_held.isEmpty()) {
        return;
    }
    const XcbPtr<xcb_query_keymap_reply_t> down(
        xcb_query_keymap_reply(m_connection.get(), xcb_query_keymap(m_connection.get()), nullptr));
    m_held.removeIf([&down](const auto& held) {
        const xcb_keycode_t key = held.key();
        return !down || (down->keys[key / 8] & (1U << (key % 8))) == 0;
    });
    readEventsSoon();
}

void X11HotKeys::readEventsSoon() {
    // A reply may have brought events along, of which the socket says nothing more. They are read
    // from the event loop, so that nobody is called back from inside his own call.
    QMetaObject::invokeMethod(this, &X11HotKeys::readEvents, Qt::QueuedConnection);
}

void X11HotKeys::readEvents() {
    const QPointer<X11HotKeys> self(this);
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        handle(*event);
        if (!self) {
            return;
        }
    }
    if (std::exchange(m_keyboardChanged, false)) {
        keyboardChanged();
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_notifier.setEnabled(false);
    }
}

void X11HotKeys::handle(const xcb_generic_event_t& event) {
    const auto type = uint8_t(event.response_type & 0x7f);
    if (type == XCB_KEY_PRESS) {
        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
    } else if (type == XCB_KEY_RELEASE) {
        m_held.remove(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
    } else if (type == XCB_MAPPING_NOTIFY || (m_firstXkbEvent != 0 && type == m_firstXkbEvent)) {
        m_keyboardChanged = true;
    }
}

void X11HotKeys::handlePress(const xcb_key_press_event_t& event) {
    const bool isHeld = isRepeat(event);
    m_held.insert(event.detail, {event.time, isHeld && m_held[event.detail].releaseMayBeMissed});
    if (isHeld) {
        return;
    }
    const auto modifiers = uint16_t(event.state & m_modifiers.heldBits());
    const auto hotKey = std::ranges::find_if(m_hotKeys, [&](const HotKey& candidate) {
        return candidate.key == event.detail && candidate.modifiers == modifiers;
    });
    if (hotKey == m_hotKeys.end()) {
        return;
    }
    m_lastPressTime = event.time;
    // A copy: the shortcut may be given back by what it calls.
    const std::function<void()> pressed = hotKey->pressed;
    pressed();
}

bool X11HotKeys::isRepeat(const xcb_key_press_event_t& event) const {
    const auto held = m_held.constFind(event.detail);
    if (held == m_held.cend()) {
        return false;
    }
    return !held->releaseMayBeMissed || event.time - held->lastPress < kLongestRepeatPause;
}

void X11HotKeys::keyboardChanged() {
    const Result<ModifierKeys> modifiers = readModifierKeys(m_connection.get());
    readEventsSoon();
    if (!modifiers || *modifiers == m_modifiers) {
        return;
    }
    if (m_isSuspended) {
        m_modifiers = *modifiers;
        return;
    }
    ungrabAll();
    m_modifiers = *modifiers;
    grabAll();
}

}  // namespace quillo::x11
