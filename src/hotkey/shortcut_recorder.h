// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include "hotkey/hotkey_manager.h"

class QKeyEvent;
class QWidget;

namespace quillo {

/// A key as the keyboard gave it.
struct RecordedKey {
    quint32 keyCode = kNoVirtualKeyCode;
    quint32 modifiers = 0;
    bool isModifier = false;  ///< Shift, Super and their like, pressed for themselves.
};

/// The key's position and the modifiers held with it; others (the locks) are dropped.
[[nodiscard]] RecordedKey recordedKey(const QKeyEvent& event);

enum class RecorderStep {
    Ignore,  ///< A modifier, or a key with none but Shift.
    Cancel,  ///< Escape.
    Refuse,  ///< The key has no code by which it could be stored.
    Take,
};

[[nodiscard]] RecorderStep recorderStep(const RecordedKey& key);

/// Takes the next combination of keys that is pressed for the overlay's shortcut. While it records
/// the shortcut's grab is lifted and the keyboard is its own, so that neither the overlay nor the
/// desktop acts on what is pressed. Main thread.
class ShortcutRecorder final : public QObject {
    Q_OBJECT

public:
    /// The manager must outlive the recorder.
    explicit ShortcutRecorder(HotkeyManager& manager, QObject* parent = nullptr);
    ~ShortcutRecorder() override;

    /// The keyboard goes to that widget, which has the focus; the recording ends when it loses the
    /// focus or is hidden.
    void startRecording(QWidget& keyboard);
    void stopRecording();
    [[nodiscard]] bool isRecording() const { return m_isRecording; }

Q_SIGNALS:
    void isRecordingChanged(bool isRecording);
    /// The system has this combination; nothing has changed, and the recording is over.
    void conflicted(const QString& name);
    /// A key came that no shortcut can have; the recording goes on.
    void keyRefused();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void keyPressed(const QKeyEvent& event);
    void keyReleased(const QKeyEvent& event);
    void take(const RecordedKey& key);
    void giveKeyboardBack();

    HotkeyManager& m_manager;
    QPointer<QWidget> m_keyboard;
    quint32 m_heldScanCode = 0;  ///< Of the key that ended the recording, until it is released.
    bool m_isRecording = false;
};

}  // namespace quillo
