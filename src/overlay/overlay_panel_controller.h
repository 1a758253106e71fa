// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointF>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "appearance/clip_type_color_manager.h"
#include "appearance/theme_manager.h"
#include "base/clock.h"
#include "library/thumbnails/image_thumbnails.h"
#include "overlay/overlay_clips.h"
#include "overlay/overlay_panel.h"
#include "overlay/overlay_view.h"
#include "overlay/panel_geometry.h"
#include "overlay/panel_keys.h"
#include "paste/paste_back.h"
#include "platform/notification_center.h"
#include "platform/panel_surface.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

class QKeyEvent;
class QScreen;

namespace quillo {

/// What the controller needs; everything must outlive it.
struct OverlayPanelServices {
    PersistenceController& persistence;
    Workspace& workspace;
    PasteBack& pasteBack;
    UserDefaults& defaults;
    const ThemeManager& theme;
    ClipTypeColorManager& colors;
    NotificationCenter& notifications;
    const ImageCodec& images;
    PanelSurface& surface;
    const Clock& clock;
    /// Queues a look at the pasteboard, so that a copy made just now is there soon.
    std::function<void()> captureSoon;
    /// The display server's time of the press that brings the panel up; 0 when unknown.
    std::function<quint32()> userTime;
};

/// Owns the quick picker: shows and hides the panel, remembers the program in front and gives it
/// the focus back, places the panel and keeps a dragged place, turns keys into selection and
/// choice, and hands the chosen clip to paste-back. The panel is made when the event loop first
/// rests, or on a show before that, and kept. Main thread.
class OverlayPanelController final : public PanelPositionControl {
    Q_OBJECT

public:
    explicit OverlayPanelController(OverlayPanelServices services, QObject* parent = nullptr);
    ~OverlayPanelController() override;

    /// Shows or hides; a request within 0.3 s of the last accepted one is ignored.
    void toggle();
    void show();
    void hide();

    void setPanelPosition(PanelPosition position) override;
    void resetToDefaultPosition() override;
    void setPositionLocked(bool isLocked) override;

    void selectItem(int index);
    /// Copies the clip, hides the panel and pastes. An index beyond the list does nothing.
    void chooseClip(int index, const QList<std::shared_ptr<Clip>>& clips);

    [[nodiscard]] bool isVisible() const { return m_isVisible; }
    [[nodiscard]] int selectedIndex() const { return m_selectedIndex; }
    [[nodiscard]] PanelPosition panelPosition() const override { return m_panelPosition; }
    [[nodiscard]] bool isPositionLocked() const override { return m_isPositionLocked; }
    [[nodiscard]] std::optional<QPointF> customOrigin() const { return m_customOrigin; }
    [[nodiscard]] const OverlayClips& clips() const { return m_clips; }
    /// None before it is made.
    [[nodiscard]] OverlayPanel* panel() { return m_panel.get(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void prepare();
    void createPanel();
    void fitPanel();
    void applyFrame(const QScreen& screen, int width);
    void compositingChanged();
    void clipsRefreshed();
    void resetSelection();
    void searchTextChanged(const QString& text);
    void chooseWhenFound(int index);
    void followSettings();
    void settingEdited(const QString& key);
    void updateLook();
    void themeChanged();
    void placeAgain();
    void showLock();
    void saveCustomOrigin();
    [[nodiscard]] QScreen* mainScreen() const;
    [[nodiscard]] bool isTextInputFocused() const;
    [[nodiscard]] bool handleKey(const QKeyEvent& event);
    void editText(PanelKeyAction::Kind kind);

    OverlayPanelServices m_services;
    OverlayClips m_clips;
    ImageThumbnails m_thumbnails;
    std::unique_ptr<OverlayPanel> m_panel;
    OverlayView* m_view = nullptr;
    std::optional<RunningApplication> m_previousApp;
    bool m_isVisible = false;
    bool m_wasDragged = false;
    int m_selectedIndex = 0;
    QUuid m_selectedClip;
    std::optional<int> m_awaitedChoice;  ///< Chosen before the newest search was answered.
    std::chrono::steady_clock::time_point m_lastToggleTime;
    PanelPosition m_panelPosition;
    bool m_isPositionLocked;
    std::optional<QPointF> m_customOrigin;
    bool m_isWriting = false;  ///< What changes now in the settings is ours.
};

}  // namespace quillo
