// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "appearance/clip_type_color_manager.h"
#include "appearance/panel_position_control.h"
#include "appearance/theme_manager.h"
#include "base/clock.h"
#include "library/groups/group_list.h"
#include "library/thumbnails/card_pictures.h"
#include "overlay/overlay_actions.h"
#include "overlay/overlay_clips.h"
#include "overlay/overlay_panel.h"
#include "overlay/overlay_popups.h"
#include "overlay/overlay_view.h"
#include "overlay/panel_appearance.h"
#include "overlay/panel_placement.h"
#include "overlay/pending_deletions.h"
#include "overlay/strip_selection.h"
#include "paste/paste_back.h"
#include "platform/notification_center.h"
#include "platform/panel_surface.h"
#include "platform/thumbnail_service.h"
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
    const RichTextReader& documents;
    ThumbnailService& thumbnails;
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
    /// For how long a deletion can be taken back while the panel stays open.
    static constexpr std::chrono::milliseconds kSecondThoughts{6000};

    explicit OverlayPanelController(OverlayPanelServices services, QObject* parent = nullptr);
    /// Completes pending deletions.
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
    [[nodiscard]] int selectedIndex() const { return m_selection.index(); }
    [[nodiscard]] PanelPosition panelPosition() const override { return m_placement.position(); }
    [[nodiscard]] bool isPositionLocked() const override { return m_placement.isLocked(); }
    [[nodiscard]] std::optional<QPointF> customOrigin() const { return m_placement.customOrigin(); }
    [[nodiscard]] const OverlayClips& clips() const { return m_clips; }
    /// What the panel searches with, for other lists to share.
    [[nodiscard]] ClipSearch& search() { return m_clips.search(); }
    /// None before it is made.
    [[nodiscard]] OverlayPanel* panel() { return m_panel.get(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void prepare();
    void createPanel();
    void connectBar();
    void connectStrip();
    void fitPanel();
    void placeAgain();
    void applyFrame(const QScreen& screen, int width);
    void compositingChanged();
    void followSettings();
    void updateButtons();
    void showLock();
    void clipsRefreshed();
    void resetSelection();
    void clearCriteria();
    void searchTextChanged(const QString& text);
    void chooseWhenFound(int index);
    void deleteClip(const QUuid& clip);
    void deletionsChanged();
    void openCardMenu(int index, const QRect& anchorInStrip);
    [[nodiscard]] QRect inPanel(const QRect& inStrip) const;
    [[nodiscard]] QUuid clipAt(int index) const;
    [[nodiscard]] QScreen* mainScreen() const;
    [[nodiscard]] bool handleKey(const QKeyEvent& event);
    void act(const PanelKeyAction& action, const QString& typed);

    OverlayPanelServices m_services;
    PanelPlacement m_placement;
    OverlayClips m_clips;
    OverlayActions m_actions;
    PendingDeletions m_deletions;
    GroupList m_groups;
    CardPictures m_pictures;
    PanelAppearance m_appearance;
    StripSelection m_selection;
    std::unique_ptr<OverlayPanel> m_panel;
    OverlayView* m_view = nullptr;
    OverlayPopups* m_popups = nullptr;
    std::optional<RunningApplication> m_previousApp;
    bool m_isVisible = false;
    bool m_wasDragged = false;
    std::optional<int> m_awaitedChoice;  ///< Chosen before the newest search was answered.
    std::chrono::steady_clock::time_point m_lastToggleTime;
};

}  // namespace quillo
