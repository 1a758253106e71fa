// SPDX-License-Identifier: MIT
// Asks for one target of a selection as a program that pastes does, and writes its bytes to the
// standard output; the names of TARGETS one a line.
// usage: read_selection [--primary | --selection=NAME] [--owner] [--type] [--stall] [TARGET]
//   --owner  prints the owner's window number (0 for none) and ends
//   --type   prints the reply's type and a line feed before the bytes
//   --stall  takes no part of a large reply; prints 'stalled' and waits to be killed
// Ends with 1 when the target is refused.
#include <cstring>
#include <optional>

#include "tools/x_client.h"

namespace {

class Requestor final : public quillo::testing::XClient {
public:
    explicit Requestor(quillo::x11::Connection connection)
        : XClient(std::move(connection)),
          m_property(atom("READ_SELECTION")),
          m_window(makeWindow(XCB_EVENT_MASK_PROPERTY_CHANGE)) {}

    std::optional<QByteArray> read(const QByteArray& selection, const QByteArray& target,
                                   bool stall) {
        xcb_convert_selection(server(), m_window, atom(selection), atom(target), m_property,
                              XCB_CURRENT_TIME);
        if (!waitForAnswer()) {
            return std::nullopt;
        }
        if (stall) {
            say("stalled");
            while (waitForEvent()) {
            }
            return std::nullopt;
        }
        QByteArray bytes = takePart();
        if (m_type != atom("INCR")) {
            return bytes;
        }
        bytes.clear();
        while (waitForPart()) {
            const QByteArray part = takePart();
            if (part.isEmpty()) {
                return bytes;
            }
            bytes += part;
        }
        return std::nullopt;
    }

    QByteArray typeName() { return nameOf(m_type); }

    QByteArray names(const QByteArray& bytes) {
        QByteArray lines;
        for (qsizetype i = 0; i + 4 <= bytes.size(); i += 4) {
            xcb_atom_t name = 0;
            std::memcpy(&name, bytes.constData() + i, sizeof name);
            lines += nameOf(name) + '\n';
        }
        return lines;
    }

private:
    bool waitForAnswer() {
        while (const auto event = waitForEvent()) {
            if (typeOf(*event) == XCB_SELECTION_NOTIFY) {
                return as<xcb_selection_notify_event_t>(*event).property != XCB_ATOM_NONE;
            }
        }
        return false;
    }

    bool waitForPart() {
        while (const auto event = waitForEvent()) {
            const auto& change = as<xcb_property_notify_event_t>(*event);
            if (typeOf(*event) == XCB_PROPERTY_NOTIFY && change.atom == m_property &&
                change.state == XCB_PROPERTY_NEW_VALUE) {
                return true;
            }
        }
        return false;
    }

    QByteArray takePart() {
        const auto reply = take(m_window, m_property);
        if (!reply) {
            return {};
        }
        m_type = reply->type;
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

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
        return 2;
    }
    Requestor requestor(std::move(*connection));
    if (showOwner) {
        std::printf("%u\n", requestor.ownerOf(selection));
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
