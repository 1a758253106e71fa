// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPointer>
#include <algorithm>

#include "platform/hot_keys.h"

namespace quillo::testing {

/// Shortcuts that the test presses.
class FakeHotKeys final : public QObject, public HotKeys {
public:
    [[nodiscard]] Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(
        HotKeyChord chord, std::function<void()> pressed) override {
        if (evdevFromVirtualKeyCode(chord.keyCode) == 0) {
            return failure(ErrorKind::Unsupported, QStringLiteral("no such key"));
        }
        if (m_ownedByOthers.contains(chord) || isRegistered(chord)) {
            return failure(ErrorKind::Busy, QStringLiteral("taken"));
        }
        m_entries.append({++m_lastId, chord, std::move(pressed)});
        return std::make_unique<Registration>(this, m_lastId);
    }

    void setSuspended(bool suspended) override { m_isSuspended = suspended; }
    [[nodiscard]] quint32 lastPressTime() const override { return m_lastPressTime; }

    /// Presses and releases the keys; true when a shortcut took them.
    bool press(HotKeyChord chord, quint32 time = 1) {
        const auto entry = std::ranges::find(m_entries, chord, &Entry::chord);
        if (m_isSuspended || entry == m_entries.end()) {
            return false;
        }
        m_lastPressTime = time;
        const std::function<void()> pressed = entry->pressed;
        pressed();
        return true;
    }

    /// Another program owns the combination from now on, until it gives it back.
    void takeByAnother(HotKeyChord chord) { m_ownedByOthers.append(chord); }
    void giveBack(HotKeyChord chord) { m_ownedByOthers.removeAll(chord); }

    [[nodiscard]] bool isRegistered(HotKeyChord chord) const {
        return std::ranges::find(m_entries, chord, &Entry::chord) != m_entries.end();
    }
    [[nodiscard]] bool isSuspended() const { return m_isSuspended; }

private:
    struct Entry {
        quint64 id = 0;
        HotKeyChord chord;
        std::function<void()> pressed;
    };

    class Registration final : public HotKeyRegistration {
    public:
        Registration(FakeHotKeys* owner, quint64 id) : m_owner(owner), m_id(id) {}
        ~Registration() override {
            if (m_owner) {
                m_owner->m_entries.removeIf(
                    [this](const Entry& entry) { return entry.id == m_id; });
            }
        }

    private:
        QPointer<FakeHotKeys> m_owner;
        quint64 m_id;
    };

    QList<Entry> m_entries;
    QList<HotKeyChord> m_ownedByOthers;
    quint64 m_lastId = 0;
    bool m_isSuspended = false;
    quint32 m_lastPressTime = 0;
};

}  // namespace quillo::testing
