// SPDX-License-Identifier: MIT
#include "platform/freedesktop/portal_appearance.h"

#include "platform/freedesktop/portal_settings_reader.h"

namespace quillo {

std::optional<ColorScheme> colorSchemeFromPortal(uint value) {
    switch (value) {
        case 1:
            return ColorScheme::Dark;
        case 2:
            return ColorScheme::Light;
        default:
            return std::nullopt;
    }
}

PortalAppearance::PortalAppearance(QObject* parent) : SystemAppearance(parent) {
    auto* reader = new PortalSettingsReader;
    reader->moveToThread(&m_thread);
    connect(&m_thread, &QThread::started, reader, &PortalSettingsReader::start);
    connect(&m_thread, &QThread::finished, reader, &QObject::deleteLater);
    connect(reader, &PortalSettingsReader::valueRead, this, &PortalAppearance::receive);
    m_thread.setObjectName(QStringLiteral("bus"));
    m_thread.start();
}

PortalAppearance::~PortalAppearance() {
    m_thread.quit();
    m_thread.wait();
}

void PortalAppearance::receive(uint value) {
    const std::optional<ColorScheme> scheme = colorSchemeFromPortal(value);
    if (scheme != m_scheme) {
        m_scheme = scheme;
        Q_EMIT colorSchemeChanged();
    }
}

}  // namespace quillo
