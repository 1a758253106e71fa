// SPDX-License-Identifier: MIT
#include "appearance/app_theme.h"

#include <array>

namespace quillo {
namespace {

constexpr std::array kThemes = {AppTheme::Auto, AppTheme::Light, AppTheme::Dark};

struct ThemeTexts {
    const char* rawValue;
    const char* label;
    const char* icon;
};

const ThemeTexts& textsOf(AppTheme theme) {
    static constexpr ThemeTexts kTexts[] = {{"auto", "Auto", "circle.lefthalf.filled"},
                                            {"light", "Light", "sun.max.fill"},
                                            {"dark", "Dark", "moon.fill"}};
    return kTexts[size_t(theme)];
}

}  // namespace

template <>
std::span<const AppTheme> allCases<AppTheme>() {
    return kThemes;
}

QString rawValue(AppTheme theme) {
    return QString::fromLatin1(textsOf(theme).rawValue);
}

AppTheme appThemeFromRaw(QStringView raw) {
    for (const AppTheme theme : kThemes) {
        if (raw == rawValue(theme)) {
            return theme;
        }
    }
    return AppTheme::Auto;
}

QString label(AppTheme theme) {
    return QString::fromLatin1(textsOf(theme).label);
}

QString icon(AppTheme theme) {
    return QString::fromLatin1(textsOf(theme).icon);
}

}  // namespace quillo
