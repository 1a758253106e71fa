// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

#include "app/windows/window_frames.h"

class QWindow;

namespace quillo {

/// The program's two ordinary windows. One that is there is raised, one that was closed is built
/// anew; its frame is remembered. Closing one never ends the program. Main thread.
class ShellWindows final : public QObject {
    Q_OBJECT

public:
    using MakeContent = std::function<std::unique_ptr<QWidget>()>;

    /// What goes into the windows, and how the desktop is told that one is wanted in front.
    struct Parts {
        MakeContent makeSettings;
        MakeContent makeLibrary;
        std::function<void(QWindow&)> bringToFront;
    };

    /// defaults must outlive the object.
    ShellWindows(UserDefaults& defaults, Parts parts, QObject* parent = nullptr);
    ~ShellWindows() override;

    void showPreferences();
    void showMainWindow();

    /// Null while there is none.
    [[nodiscard]] QWidget* preferencesWindow() const { return m_preferences; }
    [[nodiscard]] QWidget* mainWindow() const { return m_main; }

Q_SIGNALS:
    /// The windows' own keys: Control-comma and Control-Q.
    void preferencesRequested();
    void quitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Shape;

    void show(QPointer<QWidget>& window, const Shape& shape, const MakeContent& makeContent);
    [[nodiscard]] QWidget* build(const Shape& shape, const MakeContent& makeContent);
    void addKeys(QWidget* window);
    void place(QWidget* window, const Shape& shape);
    void raise(QWidget* window);
    void rememberFrame(const QWidget& window);

    WindowFrames m_frames;
    Parts m_parts;
    QPointer<QWidget> m_preferences;
    QPointer<QWidget> m_main;
};

}  // namespace quillo
