// SPDX-License-Identifier: MIT
#include "hotkey/hotkey_config.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using KeyName = std::pair<quint32, const char*>;

constexpr std::array kKeyNames = {
    KeyName{0, "A"},       KeyName{11, "B"},      KeyName{8, "C"},     KeyName{2, "D"},
    KeyName{14, "E"},      KeyName{3, "F"},       KeyName{5, "G"},     KeyName{4, "H"},
    KeyName{34, "I"},      KeyName{38, "J"},      KeyName{40, "K"},    KeyName{37, "L"},
    KeyName{46, "M"},      KeyName{45, "N"},      KeyName{31, "O"},    KeyName{35, "P"},
    KeyName{12, "Q"},      KeyName{15, "R"},      KeyName{1, "S"},     KeyName{17, "T"},
    KeyName{32, "U"},      KeyName{9, "V"},       KeyName{13, "W"},    KeyName{7, "X"},
    KeyName{16, "Y"},      KeyName{6, "Z"},       KeyName{29, "0"},    KeyName{18, "1"},
    KeyName{19, "2"},      KeyName{20, "3"},      KeyName{21, "4"},    KeyName{23, "5"},
    KeyName{22, "6"},      KeyName{26, "7"},      KeyName{28, "8"},    KeyName{25, "9"},
    KeyName{49, "Space"},  KeyName{36, "Return"}, KeyName{48, "Tab"},  KeyName{53, "Esc"},
    KeyName{51, "Delete"}, KeyName{122, "F1"},    KeyName{120, "F2"},  KeyName{99, "F3"},
    KeyName{118, "F4"},    KeyName{96, "F5"},     KeyName{97, "F6"},   KeyName{98, "F7"},
    KeyName{100, "F8"},    KeyName{101, "F9"},    KeyName{109, "F10"}, KeyName{103, "F11"},
    KeyName{111, "F12"},   KeyName{123, "←"},     KeyName{124, "→"},   KeyName{126, "↑"},
    KeyName{125, "↓"}};

struct SystemShortcut {
    quint32 keyCode;
    quint32 modifiers;
    const char* name;
};

constexpr std::array kSystemShortcuts = {
    SystemShortcut{8, 256, "Copy"},          SystemShortcut{9, 256, "Paste"},
    SystemShortcut{7, 256, "Cut"},           SystemShortcut{6, 256, "Undo"},
    SystemShortcut{6, 768, "Redo"},          SystemShortcut{0, 256, "Select All"},
    SystemShortcut{1, 256, "Save"},          SystemShortcut{12, 256, "Quit"},
    SystemShortcut{13, 256, "Close Window"}, SystemShortcut{45, 256, "New"},
    SystemShortcut{31, 256, "Open"},         SystemShortcut{35, 256, "Print"},
    SystemShortcut{3, 256, "Find"},          SystemShortcut{4, 256, "Hide"},
    SystemShortcut{46, 256, "Minimize"},     SystemShortcut{48, 256, "Switch App"},
    SystemShortcut{49, 256, "Spotlight"}};

QString keyName(quint32 keyCode) {
    const auto* const found =
        std::find_if(kKeyNames.begin(), kKeyNames.end(),
                     [&](const KeyName& key) { return key.first == keyCode; });
    return found == kKeyNames.end() ? QStringLiteral("?") : QString::fromUtf8(found->second);
}

quint32 controlTwin(quint32 modifiers) {
    return (modifiers & ~kCommandModifier) | kControlModifier;
}

std::optional<quint32> as32Bits(std::optional<qint64> value) {
    if (!value || *value < 0 || *value > std::numeric_limits<quint32>::max()) {
        return std::nullopt;
    }
    return quint32(*value);
}

}  // namespace

QString displayString(const HotkeyConfig& config) {
    static constexpr std::array<std::pair<quint32, char16_t>, 4> kSigns = {
        {{kControlModifier, u'⌃'},
         {kOptionModifier, u'⌥'},
         {kShiftModifier, u'⇧'},
         {kCommandModifier, u'⌘'}}};
    QString text;
    for (const auto& [modifier, sign] : kSigns) {
        if ((config.modifiers & modifier) != 0) {
            text += QChar(sign);
        }
    }
    return text + keyName(config.keyCode);
}

QString spokenString(const HotkeyConfig& config) {
    QString text = displayString(config);
    text.replace(u'⌃', u"Control-"_s).replace(u'⌥', u"Alt-"_s);
    return text.replace(u'⇧', u"Shift-"_s).replace(u'⌘', u"Super-"_s);
}

std::optional<QString> systemShortcutName(const HotkeyConfig& config) {
    for (const SystemShortcut& shortcut : kSystemShortcuts) {
        if (shortcut.keyCode == config.keyCode &&
            (shortcut.modifiers == config.modifiers ||
             controlTwin(shortcut.modifiers) == config.modifiers)) {
            return QString::fromLatin1(shortcut.name);
        }
    }
    return std::nullopt;
}

HotkeyConfig loadHotkeyConfig(const UserDefaults& defaults) {
    const std::optional<quint32> keyCode =
        as32Bits(defaults.integer(QStringLiteral("hotkeyKeyCode")));
    if (!keyCode) {
        return {};
    }
    const QString key = QStringLiteral("hotkeyModifiers");
    const std::optional<qint64> stored = defaults.integer(key);
    if (!stored) {
        return {*keyCode, 0};
    }
    const std::optional<quint32> modifiers = as32Bits(stored);
    return modifiers ? HotkeyConfig{*keyCode, *modifiers} : HotkeyConfig{};
}

void storeHotkeyConfig(UserDefaults& defaults, const HotkeyConfig& config) {
    defaults.setObject(QStringLiteral("hotkeyKeyCode"), qint64(config.keyCode));
    defaults.setObject(QStringLiteral("hotkeyModifiers"), qint64(config.modifiers));
}

}  // namespace quillo
