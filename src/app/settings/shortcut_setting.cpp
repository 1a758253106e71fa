// SPDX-License-Identifier: MIT
#include "app/settings/shortcut_setting.h"

#include "app/settings/settings_look.h"
#include "app/settings/status_label.h"
#include "appearance/fonts.h"
#include "library/groups/alert.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qreal kSignSpacing = 2.5;
constexpr int kLinkHeight = 19;

QString idleHint() {
    return u"Click the shortcut to change it. Press the hotkey to show the overlay."_s;
}

}  // namespace

ShortcutSetting::ShortcutSetting(const SettingsServices& services, SettingsRow& row)
    : QObject(&row),
      m_manager(services.hotkeyManager),
      m_row(row),
      m_recorder(services.hotkeyManager),
      m_status(new StatusLabel),
      m_button(new PushButton(PushButton::Style::Plain, QString())) {
    addControls();
    connect(&m_manager, &HotkeyManager::isEnabledChanged, this, &ShortcutSetting::showStatus);
    connect(&m_manager, &HotkeyManager::currentConfigChanged, this, &ShortcutSetting::showShortcut);
    connect(&m_recorder, &ShortcutRecorder::isRecordingChanged, this,
            &ShortcutSetting::showShortcut);
    connect(&m_recorder, &ShortcutRecorder::conflicted, this, &ShortcutSetting::showConflict);
    connect(&m_recorder, &ShortcutRecorder::keyRefused, this, [this] {
        showHint(u"That key cannot be part of a shortcut. Press another one, or Esc to cancel."_s);
    });
    showStatus();
    showShortcut();
}

ShortcutSetting::~ShortcutSetting() {
    // A recording that ends now has no row any more to show it.
    disconnect(&m_recorder, nullptr, this, nullptr);
    disconnect(&m_manager, nullptr, this, nullptr);
}

void ShortcutSetting::addControls() {
    m_row.addBesideTitle(m_status);
    // A shorter hint moves nothing below it.
    m_row.caption().setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_row.caption().setMinimumHeight(2 * m_row.caption().fontMetrics().lineSpacing());
    auto* reset = new PushButton(PushButton::Style::Link, u"Reset to default (⇧⌘V)"_s);
    reset->setSymbol(u"arrow.counterclockwise"_s);
    reset->setAccessibleName(u"Reset to default, Shift-Super-V"_s);
    connect(reset, &QAbstractButton::clicked, this, [this] { m_manager.resetToDefault(); });
    reset->setFont(sizedFont(reset->font(), 11, QFont::Normal));
    reset->setFixedHeight(kLinkHeight);
    m_row.addBelow(reset);

    m_button->setFocusPolicy(Qt::StrongFocus);
    m_row.addControl(m_button);
    connect(m_button, &QAbstractButton::clicked, this, [this] {
        m_button->setFocus(Qt::OtherFocusReason);
        m_recorder.isRecording() ? m_recorder.stopRecording()
                                 : m_recorder.startRecording(*m_button);
    });
}

void ShortcutSetting::showStatus() {
    m_status->setStatus(m_manager.isEnabled() ? u"Enabled"_s : u"Disabled"_s,
                        m_manager.isEnabled());
}

void ShortcutSetting::showShortcut() {
    const bool isRecording = m_recorder.isRecording();
    const HotkeyConfig& config = m_manager.currentConfig();
    QFont font = m_button->font();
    font.setLetterSpacing(QFont::AbsoluteSpacing, isRecording ? 0 : kSignSpacing);
    m_button->setFont(font);
    m_button->setText(isRecording ? u"Press keys..."_s : displayString(config));
    m_button->setAccessibleName(isRecording ? u"Press keys..."_s
                                            : u"Shortcut: "_s + spokenString(config));
    m_button->setToolTip(isRecording ? QString() : u"Record another shortcut"_s);
    m_button->updateGeometry();
    showHint(isRecording ? u"Press your desired key combination, or Esc to cancel."_s : idleHint());
}

void ShortcutSetting::showHint(const QString& hint) {
    m_row.setCaption(hint);
    m_button->setAccessibleDescription(hint);
}

void ShortcutSetting::showConflict(const QString& name) {
    Alert::show(&m_row, settingsControls,
                {.title = u"Hotkey Conflict"_s,
                 .message = u"This shortcut conflicts with \"%1\". Please choose a "
                            "different combination."_s.arg(name)});
}

}  // namespace quillo
