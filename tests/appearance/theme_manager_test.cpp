// SPDX-License-Identifier: MIT
// Light or dark: what is chosen, what the desktop states, and what the application shows.
#include <gtest/gtest.h>

#include <QGuiApplication>

#include "appearance/palette.h"
#include "appearance/theme_manager.h"
#include "support/fake_system_appearance.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

constexpr auto kLight = ColorScheme::Light;
constexpr auto kDark = ColorScheme::Dark;

class Theme : public ::testing::Test {
protected:
    ~Theme() override { QGuiApplication::setPalette(QPalette()); }

    [[nodiscard]] static ColorScheme shown() { return schemeOf(QGuiApplication::palette()); }

    MemoryUserDefaults m_defaults;
    FakeSystemAppearance m_system;
};

// The platform's own palette is light where there is no desktop.
TEST_F(Theme, AStoredChoiceOrElseTheDesktopDecides) {
    const struct {
        const char* name;
        QJsonValue stored;
        std::optional<ColorScheme> desktop;
        AppTheme theme;
        ColorScheme scheme;
    } rows[] = {
        {"fresh", QJsonValue::Undefined, std::nullopt, AppTheme::Auto, kLight},
        {"fresh on a dark desktop", QJsonValue::Undefined, kDark, AppTheme::Auto, kDark},
        {"auto on a light desktop", u"auto"_s, kLight, AppTheme::Auto, kLight},
        {"dark", u"dark"_s, kLight, AppTheme::Dark, kDark},
        {"light", u"light"_s, kDark, AppTheme::Light, kLight},
        {"another case", u"Dark"_s, std::nullopt, AppTheme::Auto, kLight},
        {"blanks", u" dark"_s, std::nullopt, AppTheme::Auto, kLight},
        {"another type", 2, std::nullopt, AppTheme::Auto, kLight},
    };
    for (const auto& row : rows) {
        m_defaults.setObject(u"appTheme"_s, row.stored);
        m_system.state(row.desktop);
        QGuiApplication::setPalette(QPalette());
        ThemeManager manager(m_defaults, m_system);
        EXPECT_EQ(shown(), kLight) << row.name << ": nothing is applied yet";
        EXPECT_EQ(manager.currentTheme(), row.theme) << row.name;
        EXPECT_EQ(manager.effectiveScheme(), row.scheme) << row.name;
        manager.applyTheme();
        EXPECT_EQ(shown(), row.scheme) << row.name;
        EXPECT_EQ(m_defaults.object(u"appTheme"_s).value_or(QJsonValue::Undefined), row.stored);
    }
}

TEST_F(Theme, ChoosingStoresAppliesAndTellsOnce) {
    ThemeManager manager(m_defaults, m_system);
    int told = 0;
    QObject::connect(&manager, &ThemeManager::currentThemeChanged, &manager, [&] { ++told; });
    const QPalette platform = QGuiApplication::palette();
    manager.setCurrentTheme(AppTheme::Dark);
    EXPECT_EQ(m_defaults.string(u"appTheme"_s), u"dark"_s);
    EXPECT_EQ(shown(), kDark);
    manager.setCurrentTheme(AppTheme::Auto);
    EXPECT_EQ(m_defaults.string(u"appTheme"_s), u"auto"_s);
    EXPECT_EQ(QGuiApplication::palette(), platform) << "nothing stays forced";
    manager.setCurrentTheme(AppTheme::Auto);
    EXPECT_EQ(told, 2);
    m_defaults.setObject(u"appTheme"_s, u"light"_s);  // As an edit by hand comes in.
    EXPECT_EQ(told, 3);
    m_system.state(kDark);
    EXPECT_EQ(shown(), kLight) << "a forced theme does not follow the desktop";
}

}  // namespace
}  // namespace quillo::testing
