// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

class CaptureSounds;
class ClipTypeColorManager;
class HotkeyManager;
class LoginItem;
class PasteboardWatcher;
class PersistenceController;
class ThemeManager;
class UserDefaults;

/// What the settings window works on; everything must outlive it.
struct SettingsServices {
    UserDefaults& defaults;
    PersistenceController& persistence;
    PasteboardWatcher& pasteboardWatcher;
    HotkeyManager& hotkeyManager;
    ClipTypeColorManager& colorManager;
    ThemeManager& themeManager;
    CaptureSounds& captureSounds;
    LoginItem& loginItem;
};

}  // namespace quillo
