// SPDX-License-Identifier: MIT
#include "appearance/theme_manager.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScopedValueRollback>

#include "appearance/palette.h"

namespace quillo {
namespace {

const QString kThemeKey = QStringLiteral("appTheme");

AppTheme storedTheme(const UserDefaults& defaults) {
    return appThemeFromRaw(defaults.string(kThemeKey).value_or(QString()));
}

std::optional<ColorScheme> statedScheme(AppTheme theme, const SystemAppearance& system) {
    switch (theme) {
        case AppTheme::Light:
            return ColorScheme::Light;
        case AppTheme::Dark:
            return ColorScheme::Dark;
        case AppTheme::Auto:
            break;
    }
    return system.colorScheme();
}

}  // namespace

ThemeManager::ThemeManager(UserDefaults& defaults, const SystemAppearance& system, QObject* parent)
    : QObject(parent),
      m_defaults(defaults),
      m_system(system),
      m_currentTheme(storedTheme(defaults)),
      m_effectiveScheme(
          statedScheme(m_currentTheme, system).value_or(schemeOf(QGuiApplication::palette()))) {
    connect(&m_defaults, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == kThemeKey) {
            change(storedTheme(m_defaults));
        }
    });
    connect(&m_system, &SystemAppearance::colorSchemeChanged, this, &ThemeManager::applyTheme);
    qApp->installEventFilter(this);
}

void ThemeManager::setCurrentTheme(AppTheme theme) {
    m_defaults.setObject(kThemeKey, rawValue(theme));
    change(theme);
}

void ThemeManager::change(AppTheme theme) {
    const bool isAnother = theme != m_currentTheme;
    m_currentTheme = theme;
    applyTheme();
    if (isAnother) {
        Q_EMIT currentThemeChanged();
    }
}

void ThemeManager::applyTheme() {
    const ColorScheme scheme = usePaletteOf(statedScheme(m_currentTheme, m_system));
    if (scheme != m_effectiveScheme) {
        m_effectiveScheme = scheme;
        Q_EMIT effectiveSchemeChanged();
    }
}

// The platform's palette stays where it has the scheme: it may hold the person's own colours.
ColorScheme ThemeManager::usePaletteOf(std::optional<ColorScheme> scheme) {
    const QScopedValueRollback applying(m_isApplying, true);
    if (scheme && m_currentTheme != AppTheme::Auto) {
        QGuiApplication::setPalette(widgetPalette(*scheme));
        return *scheme;
    }
    QGuiApplication::setPalette(QPalette());
    const ColorScheme platform = schemeOf(QGuiApplication::palette());
    if (scheme && *scheme != platform) {
        QGuiApplication::setPalette(widgetPalette(*scheme));
    }
    return scheme.value_or(platform);
}

bool ThemeManager::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp && !m_isApplying &&
        m_currentTheme == AppTheme::Auto) {
        applyTheme();
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace quillo
