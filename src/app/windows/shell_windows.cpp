// SPDX-License-Identifier: MIT
#include "app/windows/shell_windows.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include "appearance/symbols.h"

using namespace Qt::StringLiterals;

namespace quillo {

/// How one of the windows is made.
struct ShellWindows::Shape {
    QString title;
    QString autosaveName;  ///< Also the window's object name.
    QSize size;
    QSize least;  ///< The same as size for a window that cannot be resized.
};

namespace {

// The window manager puts it above the frame that is remembered.
constexpr int kTitleBarHeight = 32;

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addPixmap(symbolPixmap(u"AppIcon"_s, size, Qt::black, 1));
    }
    return icon;
}

QList<QRect> screenAreas() {
    QList<QRect> areas;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        areas.append(screen->availableGeometry().adjusted(0, kTitleBarHeight, 0, 0));
    }
    return areas;
}

}  // namespace

ShellWindows::ShellWindows(UserDefaults& defaults, Parts parts, QObject* parent)
    : QObject(parent), m_frames(defaults), m_parts(std::move(parts)) {}

ShellWindows::~ShellWindows() {
    for (QWidget* const window : {m_preferences.data(), m_main.data()}) {
        if (window != nullptr) {
            rememberFrame(*window);
            window->removeEventFilter(this);
            delete window;
        }
    }
}

void ShellWindows::showPreferences() {
    static const Shape kShape{.title = u"Preferences"_s,
                              .autosaveName = u"PreferencesWindow"_s,
                              .size = QSize(500, 450),
                              .least = QSize(500, 450)};
    show(m_preferences, kShape, m_parts.makeSettings);
}

void ShellWindows::showMainWindow() {
    static const Shape kShape{.title = u"Quillo"_s,
                              .autosaveName = u"MainWindow"_s,
                              .size = QSize(1000, 700),
                              .least = QSize(900, 600)};
    show(m_main, kShape, m_parts.makeLibrary);
}

void ShellWindows::show(QPointer<QWidget>& window, const Shape& shape,
                        const MakeContent& makeContent) {
    if (window == nullptr || !window->isVisible()) {
        window = build(shape, makeContent);
    }
    raise(window);
}

QWidget* ShellWindows::build(const Shape& shape, const MakeContent& makeContent) {
    auto* const window = new QWidget(nullptr, Qt::Window);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setAttribute(Qt::WA_QuitOnClose, false);
    window->setObjectName(shape.autosaveName);
    window->setWindowTitle(shape.title);
    window->setWindowIcon(applicationIcon());
    auto* box = new QVBoxLayout(window);
    box->setContentsMargins(0, 0, 0, 0);
    QWidget* const content = makeContent().release();
    // It forgets this when it gets a parent.
    QWidget* const wanted = content->focusWidget();
    box->addWidget(content);
    addKeys(window);
    place(window, shape);
    window->installEventFilter(this);
    (wanted != nullptr ? wanted : content)->setFocus();
    return window;
}

void ShellWindows::addKeys(QWidget* window) {
    connect(new QShortcut(QKeySequence(u"Ctrl+W"_s), window), &QShortcut::activated, window,
            &QWidget::close);
    connect(new QShortcut(QKeySequence(u"Ctrl+,"_s), window), &QShortcut::activated, this,
            &ShellWindows::preferencesRequested);
    connect(new QShortcut(QKeySequence(u"Ctrl+Q"_s), window), &QShortcut::activated, this,
            &ShellWindows::quitRequested);
}

void ShellWindows::place(QWidget* window, const Shape& shape) {
    if (shape.size == shape.least) {
        window->setFixedSize(shape.size);
        window->setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    } else {
        window->setMinimumSize(shape.least);
    }
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    screen = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    QRect frame = centredFrame(shape.size, screen->availableGeometry());
    if (std::optional<QRect> stored = m_frames.stored(shape.autosaveName)) {
        stored->setSize(shape.size == shape.least ? shape.size : stored->size());
        frame = visibleFrame(*stored, shape.least, screenAreas());
    }
    window->setGeometry(frame);
}

void ShellWindows::raise(QWidget* window) {
    const bool isAway = window->isVisible() && !window->windowHandle()->isExposed();
    if (isAway) {
        // On another desktop. Not every window manager fetches a window from there when it is
        // asked to bring it to the front; one that comes anew comes to where the person is.
        window->hide();
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    // The desktop knows a new window once its own events were handled.
    QTimer::singleShot(0, window,
                       [this, window] { m_parts.bringToFront(*window->windowHandle()); });
}

bool ShellWindows::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close) {
        rememberFrame(*static_cast<QWidget*>(watched));
    }
    return QObject::eventFilter(watched, event);
}

void ShellWindows::rememberFrame(const QWidget& window) {
    const QRect frame =
        window.isMaximized() || window.isFullScreen() ? window.normalGeometry() : window.geometry();
    if (window.isVisible() && !frame.isEmpty()) {
        m_frames.store(window.objectName(), frame);
    }
}

}  // namespace quillo
