// SPDX-License-Identifier: MIT
#include "contract_desktop/desktop_probe.h"

#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include <QFile>
#include <algorithm>

#include "platform/x11/desktop/window_queries.h"
#include "platform/x11/desktop/xkb_protocol.h"
#include "support/wait_until.h"

namespace quillo::testing {

using namespace Qt::StringLiterals;
using x11::waitForServer;
using x11::XcbPtr;

namespace {

/// Asks for XKB, as every toolkit does: other programs are told of a second layout by a modifier.
x11::Connection connected() {
    auto connection = x11::connectToServer();
    if (!connection) {
        ADD_FAILURE() << "no X server";
        return {};
    }
    const XcbPtr<xcb_xkb_use_extension_reply_t> used(xcb_xkb_use_extension_reply(
        connection->get(), xcb_xkb_use_extension(connection->get(), 1, 0), nullptr));
    EXPECT_TRUE(used);
    return std::move(*connection);
}

QList<xcb_keysym_t> symbolsOfKey(xcb_connection_t* connection, xcb_keycode_t key) {
    const XcbPtr<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, key, 1), nullptr));
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    return {symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(reply.get())};
}

bool isViewable(const x11::Connection& connection, xcb_window_t window) {
    const XcbPtr<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

}  // namespace

Typist::Typist() : m_connection(connected()) {}

Typist::~Typist() {
    for (const xcb_keycode_t key : keysDown()) {
        release(key);
    }
    clearLocks();
    useLayout(0);
}

void Typist::fake(xcb_keycode_t key, uint8_t type) {
    xcb_test_fake_input(connection(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    waitForServer(connection());
}

void Typist::press(xcb_keycode_t key) {
    fake(key, XCB_KEY_PRESS);
}

void Typist::release(xcb_keycode_t key) {
    fake(key, XCB_KEY_RELEASE);
}

void Typist::tap(const QList<xcb_keycode_t>& keys) {
    std::ranges::for_each(keys, [this](xcb_keycode_t key) { press(key); });
    std::for_each(keys.crbegin(), keys.crend(), [this](xcb_keycode_t key) { release(key); });
}

QList<xcb_keycode_t> Typist::keysDown() const {
    const XcbPtr<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection(), xcb_query_keymap(connection()), nullptr));
    QList<xcb_keycode_t> result;
    for (unsigned key = 8; reply && key < 256; ++key) {
        if ((reply->keys[key / 8] & (1U << (key % 8))) != 0) {
            result.append(xcb_keycode_t(key));
        }
    }
    return result;
}

uint8_t Typist::lockedModifiers() const {
    const XcbPtr<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
        connection(), xcb_xkb_get_state(connection(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state ? state->lockedMods : uint8_t{0};
}

void Typist::useLayout(uint8_t number) {
    xcb_xkb_latch_lock_state(connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, number, 0, 0, 0);
    waitForServer(connection());
}

void Typist::clearLocks() {
    xcb_xkb_latch_lock_state(connection(), XCB_XKB_ID_USE_CORE_KBD, 0xff, 0, 0, 0, 0, 0, 0);
    waitForServer(connection());
}

xkb_keysym_t Typist::symbolOf(xcb_keycode_t key) const {
    return symbolsOfKey(connection(), key).value(0);
}

KeyWindow::KeyWindow() : m_connection(connected()), m_window(xcb_generate_id(m_connection.get())) {
    xcb_connection_t* connection = m_connection.get();
    const uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 100,
                      100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(connection, m_window);
    xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
    waitForServer(connection);
    EXPECT_TRUE(waitUntil([this] { return hasFocus(); }));
}

bool KeyWindow::hasFocus() const {
    const XcbPtr<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
    return reply && reply->focus == m_window;
}

xkb_keysym_t KeyWindow::symbolOf(const xcb_key_press_event_t& event) const {
    const QList<xcb_keysym_t> symbols = symbolsOfKey(m_connection.get(), event.detail);
    const qsizetype layout = (event.state >> 13) & 3;
    // Two layouts lie side by side; a key with one has it repeated or left out.
    const xcb_keysym_t symbol = symbols.value(layout * 2);
    return symbol != 0 ? symbol : symbols.value(0);
}

const QList<KeyWindow::Press>& KeyWindow::presses() {
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if ((event->response_type & 0x7f) != XCB_KEY_PRESS) {
            continue;
        }
        const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        const xkb_keysym_t symbol = symbolOf(press);
        const bool isModifier = symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R;
        if (!isModifier && symbol != XKB_KEY_Num_Lock) {
            m_presses.append({symbol, uint16_t(press.state & 0xff & ~XCB_MOD_MASK_2)});
        }
    }
    return m_presses;
}

Terminal::Terminal(const QString& windowClass) {
    const QString idFile = m_folder.filePath(u"id"_s);
    m_process.start(u"xterm"_s,
                    {u"-class"_s, windowClass, u"-name"_s, windowClass.toLower(), u"-e"_s, u"sh"_s,
                     u"-c"_s, u"echo $WINDOWID >'%1'; exec cat"_s.arg(idFile)});
    const bool isUp = waitUntil([&] {
        QFile file(idFile);
        const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        m_window = line.endsWith('\n') ? line.trimmed().toUInt() : 0;
        return m_window != 0;
    });
    EXPECT_TRUE(isUp) << "xterm did not start";
    const x11::Connection connection = connected();
    EXPECT_TRUE(waitUntil([&] { return isViewable(connection, m_window); }));
    x11::WindowQueries queries(connection);
    if (queries.hasWindowManager()) {
        // One that has only just started may leave the first window without.
        (void)waitUntil([&] { return queries.hasFocus(m_window); }, std::chrono::seconds(1));
    }
}

Terminal::~Terminal() {
    quit();
}

void Terminal::quit() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

bool setKeyboardMap(const QStringList& arguments) {
    return QProcess::execute(u"setxkbmap"_s, arguments) == 0;
}

}  // namespace quillo::testing
