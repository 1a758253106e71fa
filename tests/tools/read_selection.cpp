// SPDX-License-Identifier: MIT
// Asks for one target of a selection as a program that pastes does, and writes its bytes to the
// standard output; the names of TARGETS one a line.
#include <xcb/xcb.h>

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <cstdio>
#include <cstring>
#include <optional>

#include "platform/x11/xcb_support.h"

using namespace Qt::StringLiterals;
using quillo::x11::AtomTable;
using quillo::x11::Connection;
using quillo::x11::XcbPtr;

namespace {

constexpr const char* kUsage =
    "usage: read_selection [--primary | --selection=NAME] [--owner] [--type] [--stall] [TARGET]\n"
    "  --owner  prints the owner's window number (0 for none) and ends\n"
    "  --type   prints the reply's type and a line feed before the bytes\n"
    "  --stall  takes no part of a large reply; prints 'stalled' and waits to be killed\n"
    "Ends with 1 when the target is refused.\n";

class Requestor {
public:
    explicit Requestor(Connection connection)
        : m_connection(std::move(connection)),
          m_atoms(m_connection.get()),
          m_property(m_atoms.atom("READ_SELECTION")),
          m_window(xcb_generate_id(m_connection.get())) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_connection.root(),
                          0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
    }

    xcb_window_t owner(const QByteArray& selection) {
        const XcbPtr<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
            m_connection.get(),
            xcb_get_selection_owner(m_connection.get(), m_atoms.atom(selection)), nullptr));
        return reply ? reply->owner : 0;
    }

    std::optional<QByteArray> read(const QByteArray& selection, const QByteArray& target,
                                   bool stall) {
        xcb_convert_selection(m_connection.get(), m_window, m_atoms.atom(selection),
                              m_atoms.atom(target), m_property, XCB_CURRENT_TIME);
        xcb_flush(m_connection.get());
        if (!waitForAnswer()) {
            return std::nullopt;
        }
        if (stall) {
            std::puts("stalled");
            std::fflush(stdout);
            while (waitForEvent()) {
            }
            return std::nullopt;
        }
        QByteArray bytes = take();
        if (m_type != m_atoms.atom("INCR")) {
            return bytes;
        }
        bytes.clear();
        while (waitForPart()) {
            const QByteArray part = take();
            if (part.isEmpty()) {
                return bytes;
            }
            bytes += part;
        }
        return std::nullopt;
    }

    QByteArray typeName() { return m_atoms.name(m_type); }

    QByteArray names(const QByteArray& bytes) {
        QByteArray lines;
        for (qsizetype i = 0; i + 4 <= bytes.size(); i += 4) {
            xcb_atom_t atom = 0;
            std::memcpy(&atom, bytes.constData() + i, sizeof atom);
            lines += m_atoms.name(atom) + '\n';
        }
        return lines;
    }

private:
    XcbPtr<xcb_generic_event_t> waitForEvent() {
        xcb_flush(m_connection.get());
        return XcbPtr<xcb_generic_event_t>(xcb_wait_for_event(m_connection.get()));
    }

    bool waitForAnswer() {
        while (const auto event = waitForEvent()) {
            if ((event->response_type & 0x7f) == XCB_SELECTION_NOTIFY) {
                return reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property !=
                       XCB_ATOM_NONE;
            }
        }
        return false;
    }

    bool waitForPart() {
        while (const auto event = waitForEvent()) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY && change.atom == m_property &&
                change.state == XCB_PROPERTY_NEW_VALUE) {
                return true;
            }
        }
        return false;
    }

    QByteArray take() {
        const XcbPtr<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_connection.get(),
                                   xcb_get_property(m_connection.get(), 1, m_window, m_property,
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, 0x1fffffff),
                                   nullptr));
        if (!reply) {
            return {};
        }
        m_type = reply->type;
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    Connection m_connection;
    AtomTable m_atoms;
    xcb_atom_t m_property;
    xcb_atom_t m_type = XCB_ATOM_NONE;
    xcb_window_t m_window;
};

}  // namespace

int main(int argc, char** argv) {
    QByteArray selection = "CLIPBOARD";
    QByteArray target;
    bool showOwner = false;
    bool showType = false;
    bool stall = false;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "--primary") {
            selection = "PRIMARY";
        } else if (argument.startsWith("--selection=")) {
            selection = argument.mid(12);
        } else if (argument == "--owner") {
            showOwner = true;
        } else if (argument == "--type") {
            showType = true;
        } else if (argument == "--stall") {
            stall = true;
        } else {
            target = argument;
        }
    }
    auto connection = quillo::x11::connectToServer();
    if (!connection || (target.isEmpty() && !showOwner)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    Requestor requestor(std::move(*connection));
    if (showOwner) {
        std::printf("%u\n", requestor.owner(selection));
        return 0;
    }
    const auto bytes = requestor.read(selection, target, stall);
    if (!bytes) {
        return 1;
    }
    const QByteArray shown = target == "TARGETS" ? requestor.names(*bytes) : *bytes;
    if (showType) {
        std::printf("%s\n", requestor.typeName().constData());
    }
    std::fwrite(shown.constData(), 1, static_cast<std::size_t>(shown.size()), stdout);
    return 0;
}
