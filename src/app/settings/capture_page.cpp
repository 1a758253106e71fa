// SPDX-License-Identifier: MIT
#include "app/settings/capture_page.h"

#include <QHBoxLayout>
#include <algorithm>
#include <array>

#include "app/settings/choice_box.h"
#include "app/settings/segmented_control.h"
#include "app/settings/setting_rows.h"
#include "app/settings/symbol_label.h"
#include "app/settings/value_slider.h"
#include "capture/capture_sound.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr std::array<qint64, 6> kLimits = {50, 100, 200, 300, 500, 0};
constexpr std::array kBadgeSizes = {"small"_L1, "medium"_L1, "large"_L1};
constexpr int kMediumBadge = 1;
constexpr double kDefaultVolume = 0.4;
constexpr int kSmallSymbol = 14;
constexpr int kPercentWidth = 38;

// Whatever is below 1 means no limit.
qint64 limitInForce(const UserDefaults& defaults) {
    return std::max<qint64>(0, defaults.integer(u"maxHistoryItems"_s).value_or(0));
}

// As it is heard: nothing for a name that is no sound.
CaptureSound soundInForce(const UserDefaults& defaults) {
    const QString chosen =
        defaults.string(u"captureSound"_s).value_or(rawValue(CaptureSound::Frog));
    return captureSoundFromRaw(chosen).value_or(CaptureSound::None);
}

double volumeInForce(const UserDefaults& defaults) {
    const double volume = defaults.real(u"captureSoundVolume"_s).value_or(kDefaultVolume);
    return std::clamp(volume, 0.0, 1.0);
}

SettingsSection* sensitiveFilters() {
    auto* section = new SettingsSection;
    section->addRow(new SettingsRow({.title = u"Sensitive Content Filters"_s,
                                     .caption = u"Automatically filtered from clipboard history"_s,
                                     .symbol = u"shield.checkered"_s}));
    static constexpr std::array<std::pair<QLatin1StringView, QLatin1StringView>, 4> kFilters = {
        {{"Password fields"_L1, "lock.shield"_L1},
         {"6-digit codes (OTP)"_L1, "number"_L1},
         {"otpauth:// URLs"_L1, "link"_L1},
         {"Authorization headers"_L1, "network.badge.shield.half.filled"_L1}}};
    for (const auto& [text, symbol] : kFilters) {
        auto* row = new SettingsRow({.title = text, .symbol = symbol});
        row->title().setStyle(FormLabel::Style::Text);
        row->addControl(new SymbolLabel(u"checkmark.circle.fill"_s, kSmallSymbol + 2,
                                        SymbolLabel::Ink::Success));
        section->addRow(row);
    }
    return section;
}

}  // namespace

CapturePage::CapturePage(const SettingsServices& services, QWidget* parent)
    : SettingsPage(u"Capture"_s, parent), m_services(services) {
    addSection(sectionOf(limitRow()));
    addSection(contentTypes());
    addSection(sectionOf(soundRow()));
    addSection(sectionOf(switchRow({.title = u"Link Previews"_s,
                                    .caption = u"Fetch title and image from copied URLs"_s,
                                    .symbol = u"link"_s},
                                   services.defaults, u"fetchLinkPreviews"_s)));
    addSection(sectionOf(badgeSizeRow()));
    addSection(sensitiveFilters());
}

SettingsRow* CapturePage::limitRow() {
    auto* row = new SettingsRow({.title = u"History Limits"_s,
                                 .caption = u"Maximum number of clips to keep"_s,
                                 .symbol = u"clock.arrow.circlepath"_s});
    auto* value = new FormLabel(FormLabel::Style::Text);
    row->addControl(value);
    auto* presets = new SegmentedControl(u"Maximum number of clips to keep"_s,
                                         SegmentedControl::Arrows::MoveOnly);
    for (const qint64 limit : kLimits) {
        presets->addSegment(limit > 0 ? QString::number(limit) : u"Unlimited"_s,
                            limit > 0 ? QString() : u"infinity"_s);
    }
    row->addFullWidth(presets);
    row->addFullWidth(new FormLabel(
        FormLabel::Style::Caption,
        u"With each copy the oldest clips beyond the limit go. Pinned and grouped clips count, "
        "and can go too."_s));
    UserDefaults& defaults = m_services.defaults;
    connect(presets, &SegmentedControl::chosen, row, [&defaults](int index) {
        defaults.setObject(u"maxHistoryItems"_s, kLimits.at(size_t(index)));
    });
    follow(defaults, u"maxHistoryItems"_s, row, [&defaults, value, presets] {
        const qint64 limit = limitInForce(defaults);
        value->setText(limit > 0 ? QString::number(limit) : u"Unlimited"_s);
        const auto* const preset = std::ranges::find(kLimits, limit);
        presets->setCurrentIndex(preset == kLimits.end() ? -1 : int(preset - kLimits.begin()));
    });
    return row;
}

SettingsSection* CapturePage::contentTypes() {
    auto* section = new SettingsSection(u"Content Types"_s);
    section->addRow(switchRow({.title = u"Capture Images"_s, .symbol = u"photo"_s},
                              m_services.defaults, u"captureImages"_s));
    section->addRow(switchRow({.title = u"Capture Files"_s, .symbol = u"doc"_s},
                              m_services.defaults, u"captureFiles"_s));
    return section;
}

SettingsRow* CapturePage::soundRow() {
    auto* row = new SettingsRow({.title = u"Capture Sound"_s,
                                 .caption = u"Play a sound when a clip is captured"_s,
                                 .symbol = u"waveform"_s});
    auto* sounds = new ChoiceBox(u"Capture Sound"_s);
    for (const CaptureSound sound : allCases<CaptureSound>()) {
        sounds->addItem(sound == CaptureSound::None ? u"Off"_s : rawValue(sound));
    }
    row->addControl(sounds);
    row->addFullWidth(volumeLine());
    UserDefaults& defaults = m_services.defaults;
    connect(sounds, &QComboBox::activated, row, [&defaults](int index) {
        defaults.setObject(u"captureSound"_s, rawValue(CaptureSound(index)));
    });
    follow(defaults, u"captureSound"_s, row, [&defaults, sounds] {
        sounds->setCurrentIndex(std::to_underlying(soundInForce(defaults)));
    });
    return row;
}

QWidget* CapturePage::volumeLine() {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(SettingsRow::kSymbolColumn, 0, 0, 0);
    auto* slider = new ValueSlider(u"Volume"_s, {});
    slider->setToolTip(u"Volume of the capture sound"_s);
    auto* percent = new FormLabel(FormLabel::Style::Text);
    percent->setFixedWidth(kPercentWidth);
    percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* preview = new PushButton(PushButton::Style::Plain, u"Preview"_s);
    preview->setSymbol(u"play.fill"_s);
    preview->setToolTip(u"Play the sound at this volume"_s);
    row->addWidget(new SymbolLabel(u"speaker.wave.1.fill"_s, kSmallSymbol));
    row->addWidget(slider, 1);
    row->addWidget(new SymbolLabel(u"speaker.wave.2.fill"_s, kSmallSymbol));
    row->addWidget(percent);
    row->addWidget(preview);
    UserDefaults& defaults = m_services.defaults;
    connect(slider, &ValueSlider::chosen, line,
            [&defaults](double volume) { defaults.setObject(u"captureSoundVolume"_s, volume); });
    connect(preview, &QAbstractButton::clicked, line,
            [this] { m_services.captureSounds.play(soundInForce(m_services.defaults)); });
    follow(defaults, u"captureSoundVolume"_s, line, [&defaults, slider, percent] {
        slider->setShownValue(volumeInForce(defaults));
        percent->setText(percentText(volumeInForce(defaults)));
    });
    follow(defaults, u"captureSound"_s, line, [&defaults, preview] {
        preview->setEnabled(soundInForce(defaults) != CaptureSound::None);
    });
    return line;
}

SettingsRow* CapturePage::badgeSizeRow() {
    auto* row = new SettingsRow({.title = u"Image Info Size"_s,
                                 .caption = u"Size of resolution and file size labels on images"_s,
                                 .symbol = u"textformat.size"_s});
    auto* sizes = new SegmentedControl(u"Image Info Size"_s);
    for (const QString& text : {u"Small"_s, u"Medium"_s, u"Large"_s}) {
        sizes->addSegment(text);
    }
    row->addControl(sizes);
    UserDefaults& defaults = m_services.defaults;
    connect(sizes, &SegmentedControl::chosen, row, [&defaults](int index) {
        defaults.setObject(u"imageBadgeSize"_s, QString(kBadgeSizes.at(size_t(index))));
    });
    follow(defaults, u"imageBadgeSize"_s, row, [&defaults, sizes] {
        const QString stored = defaults.string(u"imageBadgeSize"_s).value_or(QString());
        const auto* const size = std::ranges::find(kBadgeSizes, stored);
        sizes->setCurrentIndex(size == kBadgeSizes.end() ? kMediumBadge
                                                         : int(size - kBadgeSizes.begin()));
    });
    return row;
}

}  // namespace quillo
