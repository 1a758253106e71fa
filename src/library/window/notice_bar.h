// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>

#include "library/window/library_look.h"

class QLabel;

namespace quillo {

class PushButton;

/// Says what was just done, at the lower edge of what it lies over, and offers to undo it as long
/// as it is seen. The next notice replaces it. Main thread.
class NoticeBar final : public QWidget {
    Q_OBJECT

public:
    /// Lies over that widget.
    explicit NoticeBar(QWidget* over);

    /// Without anything to undo it is a word that goes soon, and that is not said while something
    /// can be undone.
    void say(const QString& text, std::function<void()> undo = {});
    /// What the button does; false when nothing can be undone any more.
    bool undo();
    void setLook(const LibraryLook& look);

    static constexpr std::chrono::milliseconds kSecondThoughts{8'000};

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    LibraryLook m_look;
    QLabel* m_text;
    PushButton* m_button;
    std::function<void()> m_undo;
    QTimer m_timeout;
};

}  // namespace quillo
