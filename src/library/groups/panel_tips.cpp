// SPDX-License-Identifier: MIT
#include "library/groups/panel_tips.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QWidget>

#include "appearance/fonts.h"
#include "library/groups/popup_geometry.h"
#include "library/groups/popup_look.h"

namespace quillo {
namespace {

constexpr int kBoundsInset = 4;
constexpr int kGap = 6;
constexpr int kPaddingX = 8;
constexpr int kPaddingY = 4;
constexpr int kWidestText = 320;
constexpr qreal kRadius = 6;
constexpr std::chrono::seconds kShownFor{10};

}  // namespace

/// The tip itself. The pointer goes through it.
class TipLabel final : public QWidget {
public:
    explicit TipLabel(QWidget* panel) : QWidget(panel) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFont(sizedFont(font(), 12, QFont::Normal));
        hide();
    }

    void setText(const QString& text) {
        m_text = text;
        update();
    }
    [[nodiscard]] QString text() const { return m_text; }
    void setLook(const PopupLook& look) {
        m_look = look;
        update();
    }
    [[nodiscard]] QSize sizeHint() const override {
        const QRect text =
            fontMetrics().boundingRect(QRect(0, 0, kWidestText, 1000), Qt::TextWordWrap, m_text);
        return text.size() + QSize(2 * kPaddingX + 1, 2 * kPaddingY);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(m_look.fieldBorder, 1));
        painter.setBrush(m_look.ground);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
        painter.setPen(m_look.primaryText);
        painter.drawText(rect().adjusted(kPaddingX, 0, -kPaddingX, 0),
                         Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, m_text);
    }

private:
    QString m_text;
    PopupLook m_look;
};

PanelTips::PanelTips(QWidget* panel)
    : QObject(panel), m_panel(panel), m_label(new TipLabel(panel)) {
    setColors(paletteFor(ColorScheme::Light));
    m_timeout.setSingleShot(true);
    m_timeout.setInterval(kShownFor);
    connect(&m_timeout, &QTimer::timeout, this, &PanelTips::hide);
    // A child's tip is asked for at the child; only the application hears of all of them.
    qApp->installEventFilter(this);
}

PanelTips::~PanelTips() = default;

PanelTips* PanelTips::of(const QWidget* widget) {
    for (const QWidget* at = widget; at != nullptr; at = at->parentWidget()) {
        if (auto* tips = at->findChild<PanelTips*>(QString(), Qt::FindDirectChildrenOnly)) {
            return tips;
        }
    }
    return nullptr;
}

void PanelTips::setColors(const Palette& colors) {
    m_label->setLook(popupLook(colors));
}

void PanelTips::show(const QString& text, const QRect& target) {
    if (text.isEmpty()) {
        hide();
        return;
    }
    m_label->setText(text);
    m_target = target;
    const QRect bounds =
        m_panel->rect().adjusted(kBoundsInset, kBoundsInset, -kBoundsInset, -kBoundsInset);
    m_label->setGeometry(placePopup({.anchor = target,
                                     .wanted = m_label->sizeHint(),
                                     .bounds = bounds,
                                     .alignment = PopupAlignment::Center,
                                     .gap = kGap})
                             .ground);
    m_label->raise();
    m_label->show();
    m_timeout.start();
}

void PanelTips::hide() {
    m_timeout.stop();
    m_label->hide();
    m_widget = nullptr;
}

bool PanelTips::isShown() const {
    return !m_label->isHidden();
}

QString PanelTips::text() const {
    return isShown() ? m_label->text() : QString();
}

// False for a widget without a text of its own: it may answer by itself.
bool PanelTips::showTipOf(QWidget& widget) {
    if (widget.toolTip().isEmpty()) {
        return false;
    }
    m_widget = &widget;
    show(widget.toolTip(), QRect(widget.mapTo(m_panel, QPoint()), widget.size()));
    return true;
}

bool PanelTips::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::ToolTip && watched->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(watched);
        if (m_panel->isAncestorOf(widget) && showTipOf(*widget)) {
            event->accept();
            return true;
        }
    } else if (isShown()) {
        hideOn(watched, *event);
    }
    return QObject::eventFilter(watched, event);
}

void PanelTips::hideOn(const QObject* watched, const QEvent& event) {
    switch (event.type()) {
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::Wheel:
        case QEvent::WindowDeactivate:
            hide();
            break;
        case QEvent::Leave:
        case QEvent::Hide:
            if (watched == m_widget || watched == m_panel) {
                hide();
            }
            break;
        case QEvent::MouseMove: {
            const auto& move = static_cast<const QMouseEvent&>(event);
            if (!m_target.contains(m_panel->mapFromGlobal(move.globalPosition()).toPoint())) {
                hide();
            }
            break;
        }
        default:
            break;
    }
}

}  // namespace quillo
