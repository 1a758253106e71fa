// SPDX-License-Identifier: MIT
// The shortcut: its texts, what is refused, what is stored, and its registration.
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include "hotkey/hotkey_manager.h"
#include "hotkey/shortcut_recorder.h"
#include "support/fake_hot_keys.h"
#include "support/fake_workspace.h"
#include "support/memory_user_defaults.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

TEST(HotkeyConfig, DisplaysModifiersInOrderAndTheKeysName) {
    const struct {
        HotkeyConfig config;
        QString text;
    } rows[] = {
        {{}, u"⇧⌘V"_s},          {{49, 6144}, u"⌃⌥Space"_s}, {{123, 4096 | 256}, u"⌃⌘←"_s},
        {{0, 2304}, u"⌥⌘A"_s},   {{122, 0}, u"F1"_s},        {{200, 256}, u"⌘?"_s},
        {{9, 7936}, u"⌃⌥⇧⌘V"_s},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(displayString(row.config), row.text);
    }
}

TEST(HotkeyConfig, RefusesTheSystemsShortcutsAndTheirControlTwinsOnly) {
    const struct {
        HotkeyConfig config;
        std::optional<QString> name;
    } rows[] = {
        {{8, 256}, u"Copy"_s},        {{8, 4096}, u"Copy"_s},          {{6, 768}, u"Redo"_s},
        {{6, 4096 | 512}, u"Redo"_s}, {{49, 256}, u"Spotlight"_s},     {{8, 2304}, std::nullopt},
        {{9, 768}, std::nullopt},     {{8, 256 | 4096}, std::nullopt}, {{8, 0}, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(systemShortcutName(row.config), row.name)
            << row.config.keyCode << " " << row.config.modifiers;
    }
}

TEST(HotkeyConfig, ReadsTheSettingsAndDistrustsThem) {
    const HotkeyConfig standard;
    const struct {
        const char* name;
        QJsonObject settings;
        HotkeyConfig config;
    } rows[] = {
        {"fresh", {}, standard},
        {"stored", {{u"hotkeyKeyCode"_s, 49}, {u"hotkeyModifiers"_s, 6144}}, {49, 6144}},
        {"modifiers missing", {{u"hotkeyKeyCode"_s, 49}}, {49, 0}},
        {"key code missing", {{u"hotkeyModifiers"_s, 6144}}, standard},
        {"key code of the wrong type",
         {{u"hotkeyKeyCode"_s, u"49"_s}, {u"hotkeyModifiers"_s, 6144}},
         standard},
        {"negative", {{u"hotkeyKeyCode"_s, -1}, {u"hotkeyModifiers"_s, 768}}, standard},
        {"too large", {{u"hotkeyKeyCode"_s, 9}, {u"hotkeyModifiers"_s, 4294967296.0}}, standard},
    };
    for (const auto& row : rows) {
        const MemoryUserDefaults defaults(row.settings);
        EXPECT_EQ(loadHotkeyConfig(defaults), row.config) << row.name;
    }
}

TEST(HotkeyManager, ChangesOnlyWhatIsAllowedAndStoresItEvenWhenItIsTaken) {
    FakeHotKeys hotKeys;
    MemoryUserDefaults defaults;
    FakeWorkspace workspace;
    HotkeyManager manager({hotKeys, defaults, workspace}, nullptr);
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_TRUE(hotKeys.isRegistered({9, 768}));
    EXPECT_TRUE(defaults.values().isEmpty());

    EXPECT_EQ(manager.updateHotkey({8, 256}), u"Copy"_s);
    EXPECT_TRUE(hotKeys.isRegistered({9, 768}));
    EXPECT_TRUE(defaults.values().isEmpty());

    EXPECT_EQ(manager.updateHotkey({49, 6144}), std::nullopt);
    EXPECT_TRUE(hotKeys.isRegistered({49, 6144}));
    EXPECT_FALSE(hotKeys.isRegistered({9, 768}));
    EXPECT_EQ(defaults.integer(u"hotkeyKeyCode"_s), 49);
    EXPECT_EQ(defaults.integer(u"hotkeyModifiers"_s), 6144);

    hotKeys.takeByAnother({50, 6144});
    EXPECT_EQ(manager.updateHotkey({50, 6144}), std::nullopt);
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_EQ(manager.currentConfig(), (HotkeyConfig{50, 6144}));
    EXPECT_EQ(defaults.integer(u"hotkeyKeyCode"_s), 50);

    manager.resetToDefault();
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_EQ(defaults.integer(u"hotkeyKeyCode"_s), 9);
}

// Both numbers change in one edit, and each of them is told of.
TEST(HotkeyManager, AShortcutEditedInTheSettingsTakesEffectAtOnce) {
    FakeHotKeys hotKeys;
    MemoryUserDefaults defaults({{u"hotkeyKeyCode"_s, 49}, {u"hotkeyModifiers"_s, 6144}});
    FakeWorkspace workspace;
    HotkeyManager manager({hotKeys, defaults, workspace}, nullptr);
    int told = 0;
    QObject::connect(&manager, &HotkeyManager::currentConfigChanged, &manager, [&] { ++told; });
    defaults.setObject(u"hotkeyKeyCode"_s, 50);
    EXPECT_TRUE(hotKeys.isRegistered({50, 6144}));
    EXPECT_FALSE(hotKeys.isRegistered({49, 6144}));
    defaults.remove(u"hotkeyKeyCode"_s);
    EXPECT_EQ(manager.currentConfig(), HotkeyConfig());
    EXPECT_EQ(told, 2);
    (void)manager.updateHotkey({51, 512});
    EXPECT_EQ(told, 3) << "its own two writes are no edits";
}

TEST(HotkeyManager, ATakenShortcutIsTriedAgainWhenAnotherWindowBecomesActiveAndWhenAsked) {
    FakeHotKeys hotKeys;
    MemoryUserDefaults defaults;
    FakeWorkspace workspace;
    hotKeys.takeByAnother({9, 768});
    HotkeyManager manager({hotKeys, defaults, workspace}, nullptr);
    ASSERT_FALSE(manager.isEnabled());
    workspace.setActive(std::nullopt);
    QCoreApplication::processEvents();
    EXPECT_FALSE(manager.isEnabled());
    hotKeys.giveBack({9, 768});
    workspace.setActive(std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return manager.isEnabled(); }));
    EXPECT_FALSE(workspace.isWatched()) << "no wake-ups once it is registered";

    hotKeys.takeByAnother({50, 6144});
    (void)manager.updateHotkey({50, 6144});
    manager.setSuspended(true);
    hotKeys.giveBack({50, 6144});
    manager.retryIfDisabled();
    EXPECT_FALSE(manager.isEnabled()) << "nothing is grabbed while keys are recorded";
    manager.setSuspended(false);
    EXPECT_TRUE(manager.isEnabled());
    (void)manager.updateHotkey({200, 6144});
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_FALSE(workspace.isWatched()) << "no window brings a key that the keyboard lacks";
}

TEST(ShortcutRecorder, TakesCombinationsOnly) {
    const struct {
        const char* name;
        RecordedKey key;
        RecorderStep step;
    } rows[] = {
        {"Super alone", {kNoVirtualKeyCode, 256, true}, RecorderStep::Ignore},
        {"Shift-K", {40, 512}, RecorderStep::Ignore},
        {"K", {40, 0}, RecorderStep::Ignore},
        {"a media key alone", {kNoVirtualKeyCode, 0}, RecorderStep::Ignore},
        {"Escape", {53, 0}, RecorderStep::Cancel},
        {"Control-Escape", {53, 4096}, RecorderStep::Cancel},
        {"Control and a media key", {kNoVirtualKeyCode, 4096}, RecorderStep::Refuse},
        {"Control-Option-Space", {49, 6144}, RecorderStep::Take},
        {"Command-C, for the manager to refuse", {8, 256}, RecorderStep::Take},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(recorderStep(row.key), row.step) << row.name;
    }
}

class RecordingTest : public ::testing::Test {
protected:
    RecordingTest() {
        QObject::connect(&m_recorder, &ShortcutRecorder::conflicted, &m_recorder,
                         [this](const QString& name) { m_conflicts.append(name); });
        m_recorder.startRecording(m_widget);
    }

    void send(QEvent::Type type, int key, quint32 evdev, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(type, key, modifiers, evdev + 8, 0, 0);
        QCoreApplication::sendEvent(&m_widget, &event);
    }
    void press(int key, quint32 evdev, Qt::KeyboardModifiers modifiers) {
        send(QEvent::KeyPress, key, evdev, modifiers);
    }

    FakeHotKeys m_hotKeys;
    MemoryUserDefaults m_defaults;
    FakeWorkspace m_workspace;
    HotkeyManager m_manager{{m_hotKeys, m_defaults, m_workspace}, nullptr};
    QWidget m_widget;
    QStringList m_conflicts;
    ShortcutRecorder m_recorder{m_manager};
};

TEST_F(RecordingTest, TakesThePositionWhateverTheLayoutSaysAndHoldsTheKeyboardUntilItsRelease) {
    EXPECT_TRUE(m_hotKeys.isSuspended());
    EXPECT_EQ(QWidget::keyboardGrabber(), &m_widget);
    press(Qt::Key_Meta, KEY_LEFTMETA, Qt::MetaModifier);
    press(Qt::Key_K, KEY_K, Qt::ShiftModifier);
    ASSERT_TRUE(m_recorder.isRecording());
    press(Qt::Key_Y, KEY_Z, Qt::MetaModifier | Qt::AltModifier);
    EXPECT_FALSE(m_recorder.isRecording());
    EXPECT_FALSE(m_hotKeys.isSuspended());
    EXPECT_EQ(m_manager.currentConfig(), (HotkeyConfig{6, 256 | 2048}));
    EXPECT_EQ(QWidget::keyboardGrabber(), &m_widget);
    send(QEvent::KeyRelease, Qt::Key_Y, KEY_Z, Qt::MetaModifier | Qt::AltModifier);
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
}

TEST_F(RecordingTest, EndsWithEverythingAsItWasWhenItIsRefusedCancelledOrLeft) {
    const struct {
        const char* name;
        std::function<void()> end;
        QStringList conflicts;
    } rows[] = {
        {"refused", [&] { press(Qt::Key_C, KEY_C, Qt::MetaModifier); }, {u"Copy"_s}},
        {"cancelled", [&] { press(Qt::Key_Escape, KEY_ESC, {}); }, {}},
        {"focus lost",
         [&] {
             QFocusEvent out(QEvent::FocusOut);
             QCoreApplication::sendEvent(&m_widget, &out);
         },
         {}},
    };
    for (const auto& row : rows) {
        m_conflicts.clear();
        m_recorder.startRecording(m_widget);
        ASSERT_TRUE(m_hotKeys.isSuspended()) << row.name;
        row.end();
        EXPECT_FALSE(m_recorder.isRecording()) << row.name;
        EXPECT_FALSE(m_hotKeys.isSuspended()) << row.name;
        EXPECT_TRUE(m_hotKeys.isRegistered({9, 768})) << row.name;
        EXPECT_EQ(m_conflicts, row.conflicts) << row.name;
        EXPECT_TRUE(m_defaults.values().isEmpty()) << row.name;
    }
}

}  // namespace
}  // namespace quillo::testing
