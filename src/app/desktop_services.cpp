// SPDX-License-Identifier: MIT
#include "app/desktop_services.h"

#include "base/logging.h"
#include "platform/freedesktop/autostart_login_item.h"
#include "platform/freedesktop/dbus_application_service.h"
#include "platform/freedesktop/desktop_entry_index.h"
#include "platform/freedesktop/freedesktop_thumbnails.h"
#include "platform/freedesktop/network_path_monitor.h"
#include "platform/freedesktop/portal_appearance.h"
#include "platform/freedesktop/session_bus_connector.h"
#include "platform/images/qt_image_codec.h"
#include "platform/network/qt_http_client.h"
#include "platform/sound/qt_sound_player.h"
#include "platform/text/document_reader.h"
#include "platform/tray/tray_status_item.h"
#include "platform/x11/desktop/x11_hot_keys.h"
#include "platform/x11/desktop/x11_key_event_poster.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "platform/x11/panel/x11_panel_surface.h"
#include "platform/x11/pasteboard/x11_pasteboard.h"

#include <cstdlib>
#include <utility>

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcApp, "AppDelegate")

// Moves a made service into its place; false, with the first error kept, when it was not made.
template <typename Interface, typename Service>
bool place(std::unique_ptr<Interface>& where, Result<std::unique_ptr<Service>> made, Error& error) {
    if (!made) {
        error = made.error();
        return false;
    }
    where = std::move(*made);
    return true;
}

// The status item and the way in from outside; both wait for the bus, and nobody for them.
void addSessionServices(DesktopServices& services) {
    auto statusItem = std::make_unique<tray::TrayStatusItem>();
    auto service = std::make_unique<DBusApplicationService>();
    auto* const connector = new SessionBusConnector(statusItem.get());
    QObject::connect(connector, &SessionBusConnector::connected, statusItem.get(),
                     &tray::TrayStatusItem::followBus);
    QObject::connect(connector, &SessionBusConnector::connected, service.get(),
                     [target = service.get()](const std::optional<QDBusConnection>& bus) {
                         if (bus) {
                             target->offerOn(*bus);
                         }
                     });
    services.startSessionBus = [connector] { connector->start(); };
    services.statusItem = std::move(statusItem);
    services.applicationService = std::move(service);
}

}  // namespace

Result<DesktopServices> makeDesktopServices(std::function<void()> displayLost) {
    DesktopServices services;
    services.richText = std::make_unique<DocumentReader>();
    services.images = std::make_unique<QtImageCodec>();
    services.thumbnails = std::make_unique<FreedesktopThumbnails>(*services.images);
    services.appearance = std::make_unique<PortalAppearance>();
    // These three begin their threads with their first use.
    services.path = std::make_unique<NetworkPathMonitor>();
    services.http = std::make_unique<QtHttpClient>();
    services.sounds = std::make_unique<QtSoundPlayer>([] { std::_Exit(EXIT_SUCCESS); });
    services.loginItem = std::make_unique<AutostartLoginItem>();
    auto index = std::make_unique<DesktopEntryIndex>();
    index->warmUp();
    services.applications = std::move(index);
    const PasteboardConverters converters{*services.richText, *services.images};
    x11::X11Pasteboard::Options options;
    options.connectionLost = std::move(displayLost);
    Error error;
    const bool isComplete =
        place(services.pasteboard, x11::X11Pasteboard::create(converters, std::move(options)),
              error) &&
        place(services.workspace, x11::X11Workspace::create(*services.applications), error) &&
        place(services.hotKeys, x11::X11HotKeys::create(), error) &&
        place(services.keyEvents, x11::X11KeyEventPoster::create(), error) &&
        place(services.panelSurface, x11::X11PanelSurface::create(), error);
    if (!isComplete) {
        return std::unexpected(error);
    }
    addSessionServices(services);
    qCInfo(lcApp, "Desktop services: X11");
    return services;
}

}  // namespace quillo
