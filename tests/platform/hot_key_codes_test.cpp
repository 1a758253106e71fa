// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include "platform/hot_keys.h"

namespace quillo::testing {
namespace {

TEST(HotKeyCodes, NamePositionsOfTheKeyboard) {
    const std::pair<quint32, quint32> rows[] = {
        {9, KEY_V},      {0, KEY_A},      {29, KEY_0},   {22, KEY_6},     {23, KEY_5},
        {49, KEY_SPACE}, {36, KEY_ENTER}, {53, KEY_ESC}, {122, KEY_F1},   {111, KEY_F12},
        {118, KEY_F4},   {123, KEY_LEFT}, {126, KEY_UP}, {50, KEY_GRAVE}, {51, KEY_BACKSPACE},
    };
    for (const auto& [virtualCode, evdev] : rows) {
        EXPECT_EQ(evdevFromVirtualKeyCode(virtualCode), evdev);
        EXPECT_EQ(virtualKeyCodeFromEvdev(evdev), virtualCode);
    }
}

TEST(HotKeyCodes, WhatIsNoKeyHasNoCode) {
    EXPECT_EQ(evdevFromVirtualKeyCode(kNoVirtualKeyCode), 0U);
    EXPECT_EQ(evdevFromVirtualKeyCode(55), 0U) << "a modifier alone is no shortcut";
    EXPECT_EQ(virtualKeyCodeFromEvdev(0), kNoVirtualKeyCode);
    EXPECT_EQ(virtualKeyCodeFromEvdev(KEY_LEFTMETA), kNoVirtualKeyCode);
}

}  // namespace
}  // namespace quillo::testing
