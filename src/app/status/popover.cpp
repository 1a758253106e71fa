// SPDX-License-Identifier: MIT
#include "app/status/popover.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "appearance/palette.h"

namespace quillo {
namespace {

constexpr int kGap = 4;
constexpr qreal kCornerRadius = 10;
constexpr qint64 kSameClickMs = 250;

/// The popover's ground.
class PopoverWindow final : public QWidget {
public:
    explicit PopoverWindow(bool isBlended)
        : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
          m_radius(isBlended ? kCornerRadius : 0) {
        setAttribute(Qt::WA_TranslucentBackground, isBlended);
        setAttribute(Qt::WA_QuitOnClose, false);
        setWindowTitle(QStringLiteral("Recent clips"));
        setAccessibleName(QStringLiteral("Recent clips"));
        setFixedSize(Popover::kSize);
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const Palette& colors = paletteFor(schemeOf(palette()));
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colors.panelBorder, 1));
        painter.setBrush(colors.panelBackground);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), m_radius, m_radius);
    }

private:
    qreal m_radius;
};

QRect screenArea(const QPoint& at) {
    const QScreen* screen = QGuiApplication::screenAt(at);
    screen = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry().adjusted(kGap, kGap, -kGap, -kGap)
                             : QRect(QPoint(0, 0), Popover::kSize);
}

}  // namespace

Popover::Popover(PanelSurface& surface, MakeContent makeContent, QObject* parent)
    : QObject(parent), m_surface(surface), m_makeContent(std::move(makeContent)) {}

Popover::~Popover() = default;

bool Popover::wasJustDismissed() const {
    return m_sinceFocusLoss.isValid() && m_sinceFocusLoss.elapsed() < kSameClickMs;
}

void Popover::present(const std::optional<QRect>& anchor) {
    dismiss();
    m_window = std::make_unique<PopoverWindow>(m_surface.isCompositing());
    QWidget* const content = m_makeContent().release();
    m_window->layout()->addWidget(content);
    m_window->setFocusProxy(content);
    const QRect at = anchor.value_or(QRect(QCursor::pos(), QSize(1, 1)));
    m_window->setGeometry(popoverFrame(at, kSize, screenArea(at.center())));
    m_window->winId();
    m_window->installEventFilter(this);
    QWindow& handle = *m_window->windowHandle();
    m_surface.prepare(handle, 0);
    m_window->show();
    m_window->raise();
    m_surface.takeFocus(handle, 0);
    content->setFocus();
}

void Popover::dismiss() {
    if (!m_window) {
        return;
    }
    m_window->removeEventFilter(this);
    m_surface.release(*m_window->windowHandle());
    m_window->hide();
    // What is inside may be what asks for it.
    m_window.release()->deleteLater();
}

bool Popover::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate) {
        m_sinceFocusLoss.start();
        dismiss();
    } else if (event->type() == QEvent::KeyPress &&
               static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        dismiss();
        return true;
    } else if (event->type() == QEvent::Close) {
        dismiss();
    }
    return QObject::eventFilter(watched, event);
}

QRect popoverFrame(const QRect& anchor, const QSize& size, const QRect& area) {
    const int below = anchor.bottom() + 1 + kGap;
    const int above = anchor.top() - kGap - size.height();
    const bool fitsBelow = below + size.height() <= area.bottom() + 1;
    const int wantedTop = fitsBelow || above < area.top() ? below : above;
    const int left = anchor.center().x() - size.width() / 2;
    const auto within = [](int value, int least, int most) {
        return std::max(least, std::min(value, most));
    };
    return {QPoint(within(left, area.left(), area.right() + 1 - size.width()),
                   within(wantedTop, area.top(), area.bottom() + 1 - size.height())),
            size};
}

}  // namespace quillo
