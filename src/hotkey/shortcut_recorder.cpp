// SPDX-License-Identifier: MIT
#include "hotkey/shortcut_recorder.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>
#include <array>
#include <utility>

namespace quillo {
namespace {

constexpr quint32 kEscape = 53;
// Under X11 and Wayland alike scan codes are the kernel's, shifted.
constexpr quint32 kEvdevOffset = 8;

bool isModifierKey(int key) {
    switch (key) {
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_Meta:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
        case Qt::Key_Hyper_L:
        case Qt::Key_Hyper_R:
        case Qt::Key_CapsLock:
        case Qt::Key_NumLock:
        case Qt::Key_ScrollLock:
        case Qt::Key_Mode_switch:
            return true;
        default:
            return false;
    }
}

quint32 modifierMask(Qt::KeyboardModifiers held) {
    static constexpr std::array<std::pair<Qt::KeyboardModifier, quint32>, 4> kMasks = {
        {{Qt::MetaModifier, kCommandModifier},
         {Qt::ShiftModifier, kShiftModifier},
         {Qt::AltModifier, kOptionModifier},
         {Qt::ControlModifier, kControlModifier}}};
    quint32 mask = 0;
    for (const auto& [modifier, bit] : kMasks) {
        mask |= held.testFlag(modifier) ? bit : 0;
    }
    return mask;
}

}  // namespace

RecordedKey recordedKey(const QKeyEvent& event) {
    const quint32 scanCode = event.nativeScanCode();
    return {scanCode > kEvdevOffset ? virtualKeyCodeFromEvdev(scanCode - kEvdevOffset)
                                    : kNoVirtualKeyCode,
            modifierMask(event.modifiers()), isModifierKey(event.key())};
}

RecorderStep recorderStep(const RecordedKey& key) {
    if (key.isModifier) {
        return RecorderStep::Ignore;
    }
    if (key.keyCode == kEscape) {
        return RecorderStep::Cancel;
    }
    if ((key.modifiers & (kCommandModifier | kOptionModifier | kControlModifier)) == 0) {
        return RecorderStep::Ignore;
    }
    return key.keyCode == kNoVirtualKeyCode ? RecorderStep::Refuse : RecorderStep::Take;
}

ShortcutRecorder::ShortcutRecorder(HotkeyManager& manager, QObject* parent)
    : QObject(parent), m_manager(manager) {}

ShortcutRecorder::~ShortcutRecorder() {
    stopRecording();
    giveKeyboardBack();
}

void ShortcutRecorder::startRecording(QWidget& keyboard) {
    if (m_isRecording) {
        return;
    }
    giveKeyboardBack();
    m_isRecording = true;
    m_keyboard = &keyboard;
    m_manager.setSuspended(true);
    keyboard.grabKeyboard();
    QCoreApplication::instance()->installEventFilter(this);
    Q_EMIT isRecordingChanged(true);
}

void ShortcutRecorder::stopRecording() {
    if (!std::exchange(m_isRecording, false)) {
        return;
    }
    m_manager.setSuspended(false);
    if (m_heldScanCode == 0) {
        giveKeyboardBack();
    }
    Q_EMIT isRecordingChanged(false);
}

void ShortcutRecorder::giveKeyboardBack() {
    m_heldScanCode = 0;
    if (QCoreApplication* application = QCoreApplication::instance()) {
        application->removeEventFilter(this);
    }
    if (QWidget* keyboard = std::exchange(m_keyboard, nullptr)) {
        keyboard->releaseKeyboard();
    }
}

bool ShortcutRecorder::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            event->accept();
            return true;
        case QEvent::KeyPress:
            // The event of the window is followed by the one of the widget.
            if (watched->isWidgetType()) {
                keyPressed(static_cast<QKeyEvent&>(*event));
                return true;
            }
            return false;
        case QEvent::KeyRelease:
            if (watched->isWidgetType()) {
                keyReleased(static_cast<QKeyEvent&>(*event));
                return true;
            }
            return false;
        case QEvent::FocusOut:
        case QEvent::Hide:
            if (watched == m_keyboard) {
                m_heldScanCode = 0;
                stopRecording();
                giveKeyboardBack();
            }
            return false;
        default:
            return false;
    }
}

void ShortcutRecorder::keyPressed(const QKeyEvent& event) {
    if (!m_isRecording || event.isAutoRepeat()) {
        return;
    }
    const RecordedKey key = recordedKey(event);
    switch (recorderStep(key)) {
        case RecorderStep::Ignore:
            break;
        case RecorderStep::Refuse:
            Q_EMIT keyRefused();
            break;
        // The repeats of what ends the recording would close the window, or count as presses of
        // the new shortcut.
        case RecorderStep::Cancel:
            m_heldScanCode = event.nativeScanCode();
            stopRecording();
            break;
        case RecorderStep::Take:
            m_heldScanCode = event.nativeScanCode();
            take(key);
            break;
    }
}

void ShortcutRecorder::keyReleased(const QKeyEvent& event) {
    if (!m_isRecording && !event.isAutoRepeat() && event.nativeScanCode() == m_heldScanCode) {
        giveKeyboardBack();
    }
}

void ShortcutRecorder::take(const RecordedKey& key) {
    // The grab has to be back before another one takes its place.
    m_manager.setSuspended(false);
    const std::optional<QString> conflict = m_manager.updateHotkey({key.keyCode, key.modifiers});
    stopRecording();
    if (conflict) {
        Q_EMIT conflicted(*conflict);
    }
}

}  // namespace quillo
