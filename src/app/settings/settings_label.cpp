// SPDX-License-Identifier: MIT
#include "app/settings/settings_label.h"

#include "appearance/fonts.h"

namespace quillo {
namespace {

QPalette::ColorRole roleOf(SettingsLabel::Style style) {
    switch (style) {
        case SettingsLabel::Style::Title:
        case SettingsLabel::Style::Text:
            return QPalette::WindowText;
        case SettingsLabel::Style::Caption:
        case SettingsLabel::Style::Heading:
        case SettingsLabel::Style::Status:
            return QPalette::PlaceholderText;
        case SettingsLabel::Style::Success:
            return QPalette::LinkVisited;
        case SettingsLabel::Style::Trouble:
            break;
    }
    return QPalette::BrightText;
}

int pixelsOf(SettingsLabel::Style style) {
    return style == SettingsLabel::Style::Title || style == SettingsLabel::Style::Text ? 13 : 11;
}

}  // namespace

SettingsLabel::SettingsLabel(Style style, const QString& text, QWidget* parent)
    : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setStyle(style);
}

void SettingsLabel::setStyle(Style style) {
    const bool isStrong = style == Style::Title || style == Style::Heading;
    setFont(sizedFont(font(), pixelsOf(style), isStrong ? QFont::DemiBold : QFont::Normal));
    setForegroundRole(roleOf(style));
    setWordWrap(style == Style::Caption || style == Style::Trouble);
}

}  // namespace quillo
