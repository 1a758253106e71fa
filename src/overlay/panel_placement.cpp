// SPDX-License-Identifier: MIT
#include "overlay/panel_placement.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>
#include <cmath>
#include <utility>

#include "overlay/panel_geometry.h"

namespace quillo {
namespace {

std::optional<QPointF> storedOrigin(const UserDefaults& defaults) {
    if (!defaults.boolean(QStringLiteral("panelHasCustomOrigin")).value_or(false)) {
        return std::nullopt;
    }
    const std::optional<double> x = defaults.real(QStringLiteral("panelCustomX"));
    const std::optional<double> y = defaults.real(QStringLiteral("panelCustomY"));
    // A settings file edited by hand may hold anything.
    constexpr double kFarthest = 1e6;
    if (!x || !y || !(std::abs(*x) < kFarthest) || !(std::abs(*y) < kFarthest)) {
        return std::nullopt;
    }
    return QPointF(*x, *y);
}

PanelPosition storedPosition(const UserDefaults& defaults) {
    return panelPositionFromText(
        defaults.string(QStringLiteral("panelPosition")).value_or(QString()));
}

bool storedLock(const UserDefaults& defaults) {
    return defaults.boolean(QStringLiteral("panelPositionLocked")).value_or(true);
}

// Whether the value was another one.
template <typename Value>
bool isReplaced(Value& field, Value value) {
    const bool isAnother = field != value;
    field = std::move(value);
    return isAnother;
}

QList<QRect> screenFrames() {
    QList<QRect> frames;
    for (const QScreen* screen : QGuiApplication::screens()) {
        frames.append(screen->geometry());
    }
    return frames;
}

}  // namespace

PanelPlacement::PanelPlacement(UserDefaults& defaults, QObject* parent)
    : QObject(parent),
      m_defaults(defaults),
      m_position(storedPosition(defaults)),
      m_isLocked(storedLock(defaults)),
      m_customOrigin(storedOrigin(defaults)) {
    connect(&defaults, &UserDefaults::changed, this, &PanelPlacement::settingEdited);
}

// What is read here is compared with what is held: an edit may change several keys at once.
void PanelPlacement::settingEdited(const QString& key) {
    if (m_isWriting || !key.startsWith(QLatin1StringView("panel"))) {
        return;
    }
    if (isReplaced(m_position, storedPosition(m_defaults))) {
        Q_EMIT positionChanged();
    }
    if (isReplaced(m_isLocked, storedLock(m_defaults))) {
        Q_EMIT lockedChanged();
    }
    if (isReplaced(m_customOrigin, storedOrigin(m_defaults))) {
        Q_EMIT customOriginChanged();
    }
}

void PanelPlacement::setPosition(PanelPosition position) {
    m_position = position;
    m_customOrigin.reset();
    {
        const QScopedValueRollback writing(m_isWriting, true);
        m_defaults.setObject(QStringLiteral("panelPosition"), panelPositionText(position));
    }
    storeCustomOrigin();
    Q_EMIT positionChanged();
}

void PanelPlacement::setLocked(bool isLocked) {
    m_isLocked = isLocked;
    {
        const QScopedValueRollback writing(m_isWriting, true);
        m_defaults.setObject(QStringLiteral("panelPositionLocked"), isLocked);
    }
    Q_EMIT lockedChanged();
}

void PanelPlacement::setCustomOrigin(std::optional<QPointF> origin) {
    m_customOrigin = origin;
    storeCustomOrigin();
}

void PanelPlacement::storeCustomOrigin() {
    {
        const QScopedValueRollback writing(m_isWriting, true);
        if (m_customOrigin) {
            m_defaults.setObject(QStringLiteral("panelCustomX"), m_customOrigin->x());
            m_defaults.setObject(QStringLiteral("panelCustomY"), m_customOrigin->y());
        }
        m_defaults.setObject(QStringLiteral("panelHasCustomOrigin"), m_customOrigin.has_value());
    }
    Q_EMIT customOriginChanged();
}

QRect PanelPlacement::frameOn(const QScreen& screen, int width) const {
    const std::optional<QPoint> custom =
        m_customOrigin ? std::optional(m_customOrigin->toPoint()) : std::nullopt;
    const QPoint origin = originForPanel(
        m_position, custom, ScreenArea{screen.geometry(), screen.availableGeometry()}, width);
    return nearestVisibleFrame(QRect(origin, QSize(width, kPanelHeight)), screenFrames());
}

QScreen* screenOfNativeFrame(const QRect& frame) {
    QScreen* best = nullptr;
    qint64 most = 0;
    for (QScreen* screen : QGuiApplication::screens()) {
        // A scaled screen keeps its place and counts its size in larger pixels.
        const QRect logical = screen->geometry();
        const QRect native(logical.topLeft(),
                           (QSizeF(logical.size()) * screen->devicePixelRatio()).toSize());
        const QRect common = native.intersected(frame);
        const qint64 area = qint64(common.width()) * common.height();
        if (!common.isEmpty() && area > most) {
            best = screen;
            most = area;
        }
    }
    return best;
}

}  // namespace quillo
