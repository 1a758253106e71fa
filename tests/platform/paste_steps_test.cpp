// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QHash>

#include "platform/x11/desktop/x11_key_event_poster.h"

namespace quillo::testing {
namespace {

using x11::KeyStep;
using x11::ModifierKeys;

constexpr xcb_keycode_t kShift = 50;
constexpr xcb_keycode_t kControl = 37;
constexpr xcb_keycode_t kSuper = 133;
constexpr xcb_keycode_t kV = 55;

/// The modifiers that are down when the key is pressed, and after all steps.
struct Outcome {
    QList<xcb_keycode_t> atPress;
    QList<xcb_keycode_t> afterwards;
};

Outcome play(const QList<KeyStep>& steps, QList<xcb_keycode_t> down) {
    Outcome outcome;
    for (const KeyStep& step : steps) {
        EXPECT_NE(down.contains(step.key), step.isPress) << "a step without effect";
        if (step.isPress && step.key == kV) {
            outcome.atPress = down;
        }
        if (step.isPress) {
            down.append(step.key);
        } else {
            down.removeOne(step.key);
        }
    }
    outcome.afterwards = down;
    return outcome;
}

TEST(PasteSteps, LiftWhatIsHeldAndRestoreIt) {
    const Outcome outcome =
        play(x11::stepsForChord({{kControl}, kV}, {kShift, kSuper}, false), {kShift, kSuper});
    EXPECT_EQ(outcome.atPress, QList<xcb_keycode_t>{kControl});
    EXPECT_EQ(outcome.afterwards, (QList<xcb_keycode_t>{kShift, kSuper}));
}

TEST(PasteSteps, AHeldModifierOfTheChordItselfStaysHeld) {
    const Outcome outcome =
        play(x11::stepsForChord({{kControl, kShift}, kV}, {kControl}, false), {kControl});
    EXPECT_EQ(outcome.atPress, (QList<xcb_keycode_t>{kControl, kShift}));
    EXPECT_EQ(outcome.afterwards, QList<xcb_keycode_t>{kControl});
}

TEST(PasteSteps, AKeyThatIsStillDownIsPressedAnew) {
    const Outcome outcome = play(x11::stepsForChord({{kControl}, kV}, {}, true), {kV});
    EXPECT_EQ(outcome.atPress, QList<xcb_keycode_t>{kControl});
    EXPECT_TRUE(outcome.afterwards.isEmpty());
}

TEST(LockCombinations, CoverEveryLockOnce) {
    ModifierKeys modifiers;
    EXPECT_EQ(modifiers.lockCombinations(), (QList<uint16_t>{0, XCB_MOD_MASK_LOCK}));
    modifiers.numLock = XCB_MOD_MASK_2;
    modifiers.scrollLock = XCB_MOD_MASK_3;
    EXPECT_EQ(modifiers.lockCombinations().size(), 8);
    modifiers.scrollLock = XCB_MOD_MASK_2;
    EXPECT_EQ(modifiers.lockCombinations().size(), 4);
}

}  // namespace
}  // namespace quillo::testing
