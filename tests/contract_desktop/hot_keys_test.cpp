// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QProcess>

#include "contract_desktop/desktop_probe.h"
#include "platform/x11/desktop/x11_hot_keys.h"
#include "platform/x11/desktop/x11_key_event_poster.h"
#include "support/wait_until.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr HotKeyChord kChord{9, kCommandModifier | kShiftModifier};
const QList<xcb_keycode_t> kChordKeys{kSuperKey, kShiftKey, kVKey};

class X11HotKeysTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_hotKeys); }
    void TearDown() override { EXPECT_TRUE(setKeyboardMap({u"us"_s, u"-option"_s, u""_s})); }

    [[nodiscard]] std::unique_ptr<HotKeyRegistration> registered(HotKeyChord chord) {
        auto registration = m_hotKeys->registerHotKey(chord, [this] { ++m_pressed; });
        EXPECT_TRUE(registration);
        return registration ? std::move(*registration) : nullptr;
    }

    [[nodiscard]] bool waitForPresses(int count) const {
        return waitUntil([&] { return m_pressed == count; }, std::chrono::seconds(3));
    }

    Typist m_typist;
    std::unique_ptr<x11::X11HotKeys> m_hotKeys = x11::X11HotKeys::create().value_or(nullptr);
    int m_pressed = 0;
};

TEST_F(X11HotKeysTest, FireOverATerminalWhateverLocksAndLayoutAreOn) {
    const Terminal terminal(u"QuilloTerm"_s);
    ASSERT_TRUE(setKeyboardMap({u"us,ru"_s}));
    const auto registration = registered(kChord);
    EXPECT_EQ(m_hotKeys->lastPressTime(), 0U);
    int count = 0;
    const std::pair<const char*, std::function<void()>> states[] = {
        {"plain", [] {}},
        {"Caps Lock", [this] { m_typist.tap({kCapsLockKey}); }},
        {"Caps and Num Lock", [this] { m_typist.tap({kNumLockKey}); }},
        {"and the second layout", [this] { m_typist.useLayout(1); }},
        {"Num Lock alone", [this] { m_typist.tap({kCapsLockKey}); }},
    };
    for (const auto& [name, change] : states) {
        change();
        m_typist.tap(kChordKeys);
        EXPECT_TRUE(waitForPresses(++count)) << name;
    }
    EXPECT_NE(m_hotKeys->lastPressTime(), 0U);
}

TEST_F(X11HotKeysTest, OtherCombinationsDoNotFire) {
    KeyWindow window;
    const auto registration = registered(kChord);
    m_typist.tap({kSuperKey, kVKey});
    m_typist.tap({kSuperKey, kShiftKey, kControlKey, kVKey});
    m_typist.tap({kVKey});
    ASSERT_TRUE(waitUntil([&] { return window.presses().size() == 3; }));
    m_typist.tap(kChordKeys);
    EXPECT_TRUE(waitForPresses(1));
}

TEST_F(X11HotKeysTest, TheRepeatsOfAHeldKeyAreOnePress) {
    ASSERT_EQ(QProcess::execute(u"xset"_s, {u"r"_s, u"rate"_s, u"60"_s, u"50"_s}), 0);
    {
        KeyWindow window;
        m_typist.press(kVKey);
        ASSERT_TRUE(waitUntil([&] { return window.presses().size() >= 5; }))
            << "the server repeats no keys";
        m_typist.release(kVKey);
    }
    const auto registration = registered(kChord);
    m_typist.press(kSuperKey);
    m_typist.press(kShiftKey);
    m_typist.press(kVKey);
    ASSERT_TRUE(waitForPresses(1));
    // Time for more than ten repeats at the rate set above.
    QElapsedTimer held;
    held.start();
    ASSERT_TRUE(waitUntil([&] { return held.elapsed() > 400; }));
    EXPECT_EQ(m_pressed, 1);
    m_typist.release(kVKey);
    m_typist.press(kVKey);
    EXPECT_TRUE(waitForPresses(2));
    ASSERT_EQ(QProcess::execute(u"xset"_s, {u"r"_s, u"rate"_s}), 0);
}

TEST_F(X11HotKeysTest, ACombinationHasOneOwner) {
    auto registration = registered(kChord);
    const auto kindOf = [this](x11::X11HotKeys& hotKeys) {
        const auto result = hotKeys.registerHotKey(kChord, [this] { ++m_pressed; });
        return result ? std::optional<ErrorKind>() : std::optional(result.error().kind);
    };
    const auto others = x11::X11HotKeys::create();
    ASSERT_TRUE(others);
    EXPECT_EQ(kindOf(**others), ErrorKind::Busy);
    EXPECT_EQ(kindOf(*m_hotKeys), ErrorKind::Busy);
    registration.reset();
    EXPECT_EQ(kindOf(**others), std::nullopt);
    EXPECT_EQ(kindOf(*m_hotKeys), std::nullopt);
}

TEST_F(X11HotKeysTest, ARefusalLeavesNoGrabBehind) {
    const auto grab = [this](uint16_t modifiers) {
        const x11::XcbPtr<xcb_generic_error_t> error(xcb_request_check(
            m_typist.connection(),
            xcb_grab_key_checked(m_typist.connection(), 0, m_typist.root(), modifiers, kVKey,
                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        return error == nullptr;
    };
    constexpr uint16_t chord = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
    ASSERT_TRUE(grab(chord | XCB_MOD_MASK_2 | XCB_MOD_MASK_LOCK));
    EXPECT_FALSE(m_hotKeys->registerHotKey(kChord, [] {}));
    EXPECT_TRUE(grab(chord));
    EXPECT_TRUE(grab(chord | XCB_MOD_MASK_LOCK));
    EXPECT_TRUE(grab(chord | XCB_MOD_MASK_2));
}

TEST_F(X11HotKeysTest, SuspendedTheyLetTheKeysThrough) {
    KeyWindow window;
    auto poster = x11::X11KeyEventPoster::create();
    ASSERT_TRUE(poster);
    const auto registration = registered(kChord);
    m_typist.press(kSuperKey);
    m_typist.press(kShiftKey);
    m_typist.press(kVKey);
    ASSERT_TRUE(waitForPresses(1));

    // The key is still down, so its grab holds the keyboard until the shortcuts are suspended.
    m_hotKeys->setSuspended(true);
    ASSERT_TRUE((*poster)->postPaste(PasteKeys::ControlV));
    ASSERT_TRUE(waitUntil([&] { return !window.presses().isEmpty(); }));
    EXPECT_EQ(window.presses().constFirst().modifiers, XCB_MOD_MASK_CONTROL);
    m_typist.tap({kVKey});
    ASSERT_TRUE(waitUntil([&] { return window.presses().size() == 2; }));
    EXPECT_EQ(m_pressed, 1);

    m_hotKeys->setSuspended(false);
    m_typist.tap({kVKey});
    EXPECT_TRUE(waitForPresses(2));
}

TEST_F(X11HotKeysTest, AShortcutMayGiveItselfBack) {
    std::unique_ptr<HotKeyRegistration> registration;
    auto result = m_hotKeys->registerHotKey(kChord, [&] {
        ++m_pressed;
        registration.reset();
    });
    ASSERT_TRUE(result);
    registration = std::move(*result);
    KeyWindow window;
    m_typist.tap(kChordKeys);
    ASSERT_TRUE(waitForPresses(1));
    m_typist.tap(kChordKeys);
    EXPECT_TRUE(waitUntil([&] { return !window.presses().isEmpty(); }));
    EXPECT_EQ(m_pressed, 1);
}

TEST_F(X11HotKeysTest, AMovedModifierIsFollowed) {
    const auto registration = registered(kChord);
    ASSERT_EQ(QProcess::execute(u"xmodmap"_s,
                                {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"add mod3 = Super_L"_s}),
              0);
    EXPECT_TRUE(waitUntil([&] {
        m_typist.tap(kChordKeys);
        return m_pressed > 0;
    }));
}

}  // namespace
}  // namespace quillo::testing
