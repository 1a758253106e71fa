// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "contract_desktop/desktop_probe.h"
#include "platform/x11/desktop/x11_key_event_poster.h"
#include "support/wait_until.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

struct Posting {
    const char* name;
    QStringList keyboard;  ///< Arguments of setxkbmap.
    uint8_t layout = 0;
    PasteKeys keys = PasteKeys::ControlV;
    xkb_keysym_t symbol = XKB_KEY_v;
    uint16_t modifiers = XCB_MOD_MASK_CONTROL;
};

void PrintTo(const Posting& row, std::ostream* stream) {
    *stream << row.name;
}

class X11KeyEventPosterTest : public ::testing::TestWithParam<Posting> {
protected:
    void TearDown() override { EXPECT_TRUE(setKeyboardMap({u"us"_s, u"-option"_s, u""_s})); }

    Typist m_typist;
};

TEST_P(X11KeyEventPosterTest, PostsTheRightKeysWhateverIsHeldAndLocked) {
    const Posting& row = GetParam();
    auto poster = x11::X11KeyEventPoster::create();
    ASSERT_TRUE(poster);
    ASSERT_TRUE(setKeyboardMap(row.keyboard));
    m_typist.useLayout(row.layout);
    KeyWindow window;
    m_typist.tap({kCapsLockKey});
    m_typist.tap({kNumLockKey});
    const uint8_t locked = m_typist.lockedModifiers();
    m_typist.press(kSuperKey);
    m_typist.press(kShiftKey);
    m_typist.press(kAltKey);
    const QList<xcb_keycode_t> held = m_typist.keysDown();

    for (qsizetype count = 1; count <= 2; ++count) {
        ASSERT_TRUE((*poster)->postPaste(row.keys));
        ASSERT_TRUE(waitUntil([&] { return window.presses().size() >= count; }));
        const KeyWindow::Press press = window.presses().constLast();
        EXPECT_EQ(press.symbol, row.symbol);
        EXPECT_EQ(press.modifiers, row.modifiers);
        EXPECT_EQ(m_typist.keysDown(), held);
        EXPECT_EQ(m_typist.lockedModifiers(), locked);
    }
    EXPECT_EQ(window.presses().size(), 2);
}

using enum PasteKeys;
constexpr uint16_t kShift = XCB_MOD_MASK_SHIFT;
INSTANTIATE_TEST_SUITE_P(
    Keyboards, X11KeyEventPosterTest,
    ::testing::Values(
        Posting{"us", {u"us"_s}}, Posting{"azerty", {u"fr"_s}},
        Posting{"dvorak", {u"us"_s, u"dvorak"_s}}, Posting{"cyrillic_alone", {u"ru"_s}},
        Posting{"german_after_russian", {u"ru,de"_s}, 1},
        Posting{"russian_after_english", {u"us,ru"_s}, 1, ControlV, XKB_KEY_Cyrillic_em},
        Posting{"control_on_caps_lock", {u"us"_s, u"-option"_s, u"ctrl:swapcaps"_s}},
        Posting{"terminal", {u"us"_s}, 0, ControlShiftV, XKB_KEY_v, XCB_MOD_MASK_CONTROL | kShift},
        Posting{"xterm", {u"us"_s}, 0, ShiftInsert, XKB_KEY_Insert, kShift},
        Posting{"xterm_cyrillic", {u"ru"_s}, 0, ShiftInsert, XKB_KEY_Insert, kShift}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(X11KeyEventPosterTest, ALentKeyIsGivenBack) {
    const auto keysWithV = [this] {
        int count = 0;
        for (unsigned key = 8; key < 256; ++key) {
            count += m_typist.symbolOf(xcb_keycode_t(key)) == XKB_KEY_v ? 1 : 0;
        }
        return count;
    };
    ASSERT_TRUE(setKeyboardMap({u"ru"_s}));
    KeyWindow window;
    auto poster = x11::X11KeyEventPoster::create();
    ASSERT_TRUE(poster);
    ASSERT_EQ(keysWithV(), 0);
    ASSERT_TRUE((*poster)->postPaste(PasteKeys::ControlV));
    EXPECT_EQ(keysWithV(), 1) << "the program has yet to look the key up";
    EXPECT_TRUE(waitUntil([&] { return keysWithV() == 0; }));

    ASSERT_TRUE((*poster)->postPaste(PasteKeys::ControlV));
    ASSERT_EQ(keysWithV(), 1);
    poster->reset();
    EXPECT_TRUE(waitUntil([&] { return keysWithV() == 0; }));
}

}  // namespace
}  // namespace quillo::testing
