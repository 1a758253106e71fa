// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/active_window_watch.h"

#include <utility>

namespace quillo::x11 {

std::unique_ptr<ActiveWindowWatch> ActiveWindowWatch::create(const QByteArray& displayName,
                                                             std::function<void()> changed) {
    Result<Connection> connection = connectToServer(displayName);
    if (!connection) {
        return nullptr;
    }
    return std::unique_ptr<ActiveWindowWatch>(
        new ActiveWindowWatch(std::move(*connection), std::move(changed)));
}

ActiveWindowWatch::ActiveWindowWatch(Connection connection, std::function<void()> changed)
    : m_connection(std::move(connection)),
      m_activeWindow(AtomTable(m_connection.get()).atom("_NET_ACTIVE_WINDOW")),
      m_notifier(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read),
      m_changed(std::move(changed)) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &ActiveWindowWatch::readEvents);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection.get(), m_connection.root(), XCB_CW_EVENT_MASK,
                                 &events);
    xcb_flush(m_connection.get());
}

void ActiveWindowWatch::readEvents() {
    bool hasChanged = false;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        hasChanged = hasChanged || ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
                                    property.atom == m_activeWindow);
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        // A broken connection stays readable for ever.
        m_notifier.setEnabled(false);
    }
    if (hasChanged) {
        m_changed();
    }
}

}  // namespace quillo::x11
