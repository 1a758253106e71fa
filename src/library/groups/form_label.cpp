// SPDX-License-Identifier: MIT
#include "library/groups/form_label.h"

#include "appearance/fonts.h"

namespace quillo {
namespace {

QPalette::ColorRole roleOf(FormLabel::Style style) {
    switch (style) {
        case FormLabel::Style::Title:
        case FormLabel::Style::Text:
            return QPalette::WindowText;
        case FormLabel::Style::Caption:
        case FormLabel::Style::Heading:
        case FormLabel::Style::Status:
            return QPalette::PlaceholderText;
        case FormLabel::Style::Success:
            return QPalette::LinkVisited;
        case FormLabel::Style::Trouble:
            break;
    }
    return QPalette::BrightText;
}

int pixelsOf(FormLabel::Style style) {
    return style == FormLabel::Style::Title || style == FormLabel::Style::Text ? 13 : 11;
}

}  // namespace

FormLabel::FormLabel(Style style, const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setStyle(style);
}

void FormLabel::setStyle(Style style) {
    const bool isStrong = style == Style::Title || style == Style::Heading;
    setFont(sizedFont(font(), pixelsOf(style), isStrong ? QFont::DemiBold : QFont::Normal));
    setForegroundRole(roleOf(style));
    setWordWrap(style == Style::Caption || style == Style::Trouble);
}

}  // namespace quillo
