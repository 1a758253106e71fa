// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "base/result.h"
#include "platform/application_index.h"
#include "platform/application_service.h"
#include "platform/hot_keys.h"
#include "platform/http_client.h"
#include "platform/image_codec.h"
#include "platform/key_event_poster.h"
#include "platform/login_item.h"
#include "platform/panel_surface.h"
#include "platform/pasteboard.h"
#include "platform/path_monitor.h"
#include "platform/rich_text.h"
#include "platform/sound_player.h"
#include "platform/status_item.h"
#include "platform/system_appearance.h"
#include "platform/thumbnail_service.h"
#include "platform/workspace.h"

namespace quillo {

/// The real services of the desktop that the program runs on. Members depend on those before
/// them.
struct DesktopServices {
    std::unique_ptr<SoundPlayer> sounds;  ///< Goes last: it may end the process then.
    std::unique_ptr<RichTextReader> richText;
    std::unique_ptr<ImageCodec> images;
    std::unique_ptr<ThumbnailService> thumbnails;
    std::unique_ptr<SystemAppearance> appearance;
    std::unique_ptr<ApplicationIndex> applications;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<HotKeys> hotKeys;
    std::unique_ptr<KeyEventPoster> keyEvents;
    std::unique_ptr<PanelSurface> panelSurface;
    std::unique_ptr<PathMonitor> path;
    std::unique_ptr<HttpClient> http;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<ApplicationService> applicationService;
    /// Connects the two above to the session bus, once somebody listens to them. Returns at once.
    std::function<void()> startSessionBus;
};

/// Connects to the session's display server. Main thread; needs the application object.
/// displayLost is called once, on a thread of the services, when that server goes away.
[[nodiscard]] Result<DesktopServices> makeDesktopServices(std::function<void()> displayLost);

}  // namespace quillo
