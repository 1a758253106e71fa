// SPDX-License-Identifier: MIT
// The shortcut: its texts, what is refused, what is stored, and its registration.
#include <gtest/gtest.h>

#include "hotkey/hotkey_manager.h"
#include "support/fake_hot_keys.h"
#include "support/memory_user_defaults.h"

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
    HotkeyManager manager(hotKeys, defaults, nullptr);
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
    HotkeyManager manager(hotKeys, defaults, nullptr);
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

}  // namespace
}  // namespace quillo::testing
