// SPDX-License-Identifier: MIT
#include "platform/x11/panel/x11_panel_surface.h"

#include <xcb/xfixes.h>

#include <qpa/qwindowsysteminterface.h>

#include <QGuiApplication>
#include <QRegion>
#include <QWindow>
#include <cmath>

namespace quillo::x11 {
namespace {

constexpr quint32 kAllDesktops = 0xffffffff;
constexpr quint32 kSourceIsPager = 2;

}  // namespace

Result<std::unique_ptr<X11PanelSurface>> X11PanelSurface::create(const QByteArray& displayName) {
    Result<Connection> connection = connectToServer(displayName);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    std::unique_ptr<X11PanelSurface> surface(new X11PanelSurface(std::move(*connection)));
    surface->watchCompositor();
    return surface;
}

X11PanelSurface::X11PanelSurface(Connection connection)
    : m_connection(std::move(connection)), m_atoms(m_connection.get()) {}

X11PanelSurface::~X11PanelSurface() = default;

void X11PanelSurface::watchCompositor() {
    xcb_connection_t* const c = m_connection.get();
    m_compositorSelection = m_atoms.atom("_NET_WM_CM_S0");
    const XcbPtr<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 5, 0), nullptr));
    xcb_xfixes_select_selection_input(c, m_connection.root(), m_compositorSelection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    m_isCompositing = compositorRuns();
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(c), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { readEvents(); });
}

bool X11PanelSurface::compositorRuns() {
    xcb_connection_t* const c = m_connection.get();
    const XcbPtr<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        c, xcb_get_selection_owner(c, m_compositorSelection), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void X11PanelSurface::readEvents() {
    bool mayHaveChanged = false;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        mayHaveChanged = true;
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_notifier->setEnabled(false);
        return;
    }
    if (mayHaveChanged && compositorRuns() != m_isCompositing) {
        m_isCompositing = !m_isCompositing;
        if (m_listener) {
            m_listener();
        }
    }
}

void X11PanelSurface::setCompositingListener(std::function<void()> listener) {
    m_listener = std::move(listener);
}

void X11PanelSurface::prepare(QWindow& window, quint32 userTime) {
    xcb_connection_t* const c = m_connection.get();
    const auto id = xcb_window_t(window.winId());
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, m_atoms.atom("_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &kAllDesktops);
    // A time of 0 would tell the window manager not to give the focus.
    if (userTime != 0) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, m_atoms.atom("_NET_WM_USER_TIME"),
                            XCB_ATOM_CARDINAL, 32, 1, &userTime);
    }
    // The window is mapped over another connection, which must not overtake this one.
    waitForServer(c);
}

// The property that compositors of several desktops read: x, y, width and height of each rectangle
// in the server's pixels. One without rectangles would mean the whole window.
void X11PanelSurface::setBlurRegion(QWindow& window, const QRegion& region) {
    xcb_connection_t* const c = m_connection.get();
    const auto id = xcb_window_t(window.winId());
    const xcb_atom_t property = m_atoms.atom("_KDE_NET_WM_BLUR_BEHIND_REGION");
    if (region.isEmpty()) {
        xcb_delete_property(c, id, property);
        return;
    }
    const double ratio = window.devicePixelRatio();
    QList<quint32> numbers;
    for (const QRect& part : region) {
        for (const int number : {part.x(), part.y(), part.width(), part.height()}) {
            numbers.append(quint32(std::lround(number * ratio)));
        }
    }
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_CARDINAL, 32,
                        uint32_t(numbers.size()), numbers.constData());
}

void X11PanelSurface::takeFocus(QWindow& window, quint32 userTime) {
    xcb_connection_t* const c = m_connection.get();
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = xcb_window_t(window.winId());
    message.type = m_atoms.atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = kSourceIsPager;
    message.data.data32[1] = userTime;
    xcb_send_event(c, 0, m_connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(c);
}

// Shown again within 100 ms, the window gets the focus before Qt tells that it was lost. Qt Gui
// then sees no change and tells Qt Widgets nothing, which has no active window from the hide on. So
// it is told of the loss here.
void X11PanelSurface::release(QWindow& window) {
    if (QGuiApplication::focusWindow() == &window) {
        using System = QWindowSystemInterface;
        System::handleWindowActivated<System::SynchronousDelivery>(nullptr,
                                                                   Qt::ActiveWindowFocusReason);
    }
}

}  // namespace quillo::x11
