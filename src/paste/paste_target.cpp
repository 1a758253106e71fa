// SPDX-License-Identifier: MIT
#include "paste/paste_target.h"

#include <algorithm>
#include <span>

namespace quillo {
namespace {

// Terminals whose only paste binding is Shift-Insert, which reads PRIMARY.
constexpr const char* kShiftInsertClasses[] = {"xterm", "uxterm", "koi8rxterm", "urxvt",
                                               "rxvt",  "aterm",  "eterm",      "mlterm",
                                               "mrxvt", "kterm",  "xvt"};

// Terminals that may run without a desktop entry, or whose entry lacks the category.
constexpr const char* kTerminalClasses[] = {"alacritty",
                                            "kitty",
                                            "foot",
                                            "footclient",
                                            "wezterm",
                                            "org.wezfurlong.wezterm",
                                            "st",
                                            "st-256color",
                                            "gnome-terminal",
                                            "gnome-terminal-server",
                                            "konsole",
                                            "xfce4-terminal",
                                            "mate-terminal",
                                            "lxterminal",
                                            "qterminal",
                                            "terminator",
                                            "tilix",
                                            "guake",
                                            "yakuake",
                                            "terminology",
                                            "sakura",
                                            "roxterm",
                                            "termite",
                                            "deepin-terminal",
                                            "cool-retro-term",
                                            "kgx",
                                            "ptyxis",
                                            "ghostty",
                                            "com.mitchellh.ghostty",
                                            "contour",
                                            "rio",
                                            "tabby",
                                            "hyper",
                                            "vte-2.91"};

bool isOneOf(const QString& name, std::span<const char* const> known) {
    return std::any_of(known.begin(), known.end(), [&](const char* candidate) {
        return name.compare(QLatin1StringView(candidate), Qt::CaseInsensitive) == 0;
    });
}

bool windowIsOneOf(const RunningApplication& application, std::span<const char* const> known) {
    return isOneOf(application.windowClass, known) || isOneOf(application.windowInstance, known);
}

}  // namespace

PasteKeys pasteKeysFor(const RunningApplication& application, const QStringList& categories) {
    if (windowIsOneOf(application, kShiftInsertClasses)) {
        return PasteKeys::ShiftInsert;
    }
    if (categories.contains(QLatin1StringView("TerminalEmulator")) ||
        windowIsOneOf(application, kTerminalClasses)) {
        return PasteKeys::ControlShiftV;
    }
    return PasteKeys::ControlV;
}

}  // namespace quillo
