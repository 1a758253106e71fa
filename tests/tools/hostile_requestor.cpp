// SPDX-License-Identifier: MIT
// Asks the owner of CLIPBOARD as no well-behaved program does. Every mode says one word when it
// has done what it is for; 'stall' then waits to be killed.
#include <xcb/xcb.h>

#include <QByteArray>
#include <QList>
#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/x11/xcb_support.h"

using quillo::x11::AtomTable;
using quillo::x11::Connection;
using quillo::x11::XcbPtr;

namespace {

constexpr const char* kUsage =
    "usage: hostile_requestor stall TARGET N   N windows take one part of a large reply: "
    "'stalled'\n"
    "       hostile_requestor vanish TARGET N  the same, then all are destroyed: 'vanished'\n"
    "       hostile_requestor nonsense TARGET  requests that mean nothing: 'done' N-ANSWERS\n"
    "       hostile_requestor flood TARGET MS  a thousand requests a second: 'flooded' N-ANSWERS\n";

struct Question {
    const char* selection = "CLIPBOARD";
    xcb_atom_t target = XCB_ATOM_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    xcb_window_t requestor = XCB_WINDOW_NONE;
};

/// What is in the property of a MULTIPLE request.
struct Pairs {
    const char* name;
    std::vector<xcb_atom_t> atoms;
    xcb_atom_t type;
    std::uint8_t format = 32;
};

class Requestor {
public:
    explicit Requestor(Connection connection)
        : m_connection(std::move(connection)), m_atoms(m_connection.get()) {}

    int stall(const QByteArray& target, int count, bool vanishes) {
        std::vector<xcb_window_t> windows;
        for (int i = 0; i < count; ++i) {
            windows.push_back(makeWindow());
            ask({"CLIPBOARD", m_atoms.atom(target), m_atoms.atom("PASTED"), windows.back()});
        }
        for (int taken = 0; taken < count;) {
            const auto event = waitForEvent();
            if (!event) {
                return 1;
            }
            // The announcement is the first that is deleted; what then comes is the first part.
            if (typeOf(*event) == XCB_SELECTION_NOTIFY) {
                const auto& answer = reinterpret_cast<xcb_selection_notify_event_t&>(*event);
                xcb_delete_property(m_connection.get(), answer.requestor, m_atoms.atom("PASTED"));
                taken += 1;
            }
        }
        if (vanishes) {
            for (const xcb_window_t window : windows) {
                xcb_destroy_window(m_connection.get(), window);
            }
        }
        quillo::x11::waitForServer(m_connection.get());
        say(vanishes ? "vanished" : "stalled", count);
        while (!vanishes && waitForEvent()) {
        }
        return 0;
    }

    int flood(const QByteArray& target, int milliseconds) {
        const xcb_window_t window = makeWindow();
        int answers = 0;
        for (int passed = 0; passed < milliseconds; passed += 10) {
            for (int i = 0; i < 10; ++i) {
                ask({"CLIPBOARD", m_atoms.atom(target), m_atoms.atom("PASTED"), window});
            }
            xcb_flush(m_connection.get());
            answers += drain();
            QThread::msleep(10);
        }
        say("flooded", answers + fence(window));
        return 0;
    }

    int nonsense(const QByteArray& target) {
        const xcb_window_t window = makeWindow();
        const xcb_atom_t wanted = m_atoms.atom(target);
        const xcb_atom_t property = m_atoms.atom("PASTED");
        const xcb_atom_t multiple = m_atoms.atom("MULTIPLE");
        constexpr xcb_window_t kNoWindow = 0x1ffffff0;
        for (const char* selection : {"CLIPBOARD", "CLIPBOARD_MANAGER", "PRIMARY"}) {
            for (const xcb_window_t requestor :
                 {window, kNoWindow, m_connection.root(), owner(selection)}) {
                for (const char* name :
                     {"NO_SUCH_TARGET", "MULTIPLE", "SAVE_TARGETS", "TARGETS", "DELETE",
                      "INSERT_SELECTION", "INSERT_PROPERTY", "TIMESTAMP"}) {
                    ask({selection, m_atoms.atom(name), property, requestor});
                    ask({selection, m_atoms.atom(name), XCB_ATOM_NONE, requestor});
                }
                ask({selection, wanted, property, requestor});
                ask({selection, wanted, XCB_ATOM_NONE, requestor});
            }
        }
        const QList<Pairs> lists = listsFor(wanted, property, multiple);
        for (const Pairs& pairs : lists) {
            const xcb_atom_t holder = m_atoms.atom(pairs.name);
            xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, holder,
                                pairs.type, pairs.format,
                                static_cast<std::uint32_t>(pairs.atoms.size()), pairs.atoms.data());
            ask({"CLIPBOARD", multiple, holder, window});
            ask({"CLIPBOARD_MANAGER", m_atoms.atom("SAVE_TARGETS"), holder, window});
        }
        say("done", fence(window));
        return 0;
    }

private:
    [[nodiscard]] static QList<Pairs> listsFor(xcb_atom_t target, xcb_atom_t property,
                                               xcb_atom_t multiple) {
        constexpr xcb_atom_t kNoAtom = 0x1fffffff;
        std::vector<xcb_atom_t> many;
        for (int i = 0; i < 10'000; ++i) {
            many.insert(many.end(), {target, property});
        }
        return {
            {"PAIRS_ODD", {target, property, target}, XCB_ATOM_ATOM},
            {"PAIRS_EMPTY", {}, XCB_ATOM_ATOM},
            {"PAIRS_OF_ANOTHER_TYPE", {target, property}, XCB_ATOM_STRING},
            {"PAIRS_OF_BYTES", {target, property}, XCB_ATOM_STRING, 8},
            {"PAIRS_MANY", many, XCB_ATOM_ATOM},
            {"PAIRS_NESTED", {multiple, XCB_ATOM_WM_NAME, target, property}, XCB_ATOM_ATOM},
            {"PAIRS_TWICE", {target, property, target, property}, XCB_ATOM_ATOM},
            {"PAIRS_ITSELF", {target, XCB_ATOM_NONE, kNoAtom, kNoAtom}, XCB_ATOM_ATOM},
        };
    }

    xcb_window_t makeWindow() {
        const xcb_window_t window = xcb_generate_id(m_connection.get());
        xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, window, m_connection.root(), 0,
                          0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
        return window;
    }

    xcb_window_t owner(const QByteArray& selection) {
        const XcbPtr<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
            m_connection.get(),
            xcb_get_selection_owner(m_connection.get(), m_atoms.atom(selection)), nullptr));
        return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    }

    void ask(const Question& question) {
        xcb_convert_selection(m_connection.get(), question.requestor,
                              m_atoms.atom(question.selection), question.target, question.property,
                              XCB_CURRENT_TIME);
    }

    /// Asks once as one should, which is answered after everything before it. Gives the number of
    /// answers that came until then.
    int fence(xcb_window_t window) {
        const xcb_atom_t last = m_atoms.atom("FENCE");
        ask({"CLIPBOARD", m_atoms.atom("TARGETS"), last, window});
        for (int answers = 0;;) {
            const auto event = waitForEvent();
            if (!event) {
                return -1;
            }
            if (typeOf(*event) != XCB_SELECTION_NOTIFY) {
                continue;
            }
            ++answers;
            if (reinterpret_cast<xcb_selection_notify_event_t&>(*event).property == last) {
                return answers;
            }
        }
    }

    int drain() {
        int answers = 0;
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            answers += typeOf(*event) == XCB_SELECTION_NOTIFY ? 1 : 0;
        }
        return answers;
    }

    XcbPtr<xcb_generic_event_t> waitForEvent() {
        xcb_flush(m_connection.get());
        return XcbPtr<xcb_generic_event_t>(xcb_wait_for_event(m_connection.get()));
    }

    static int typeOf(const xcb_generic_event_t& event) { return event.response_type & 0x7f; }

    static void say(const char* word, int number) {
        std::printf("%s %d\n", word, number);
        std::fflush(stdout);
    }

    Connection m_connection;
    AtomTable m_atoms;
};

}  // namespace

int main(int argc, char** argv) {
    const QByteArray mode(argc > 2 ? argv[1] : "");
    const int number = argc > 3 ? std::atoi(argv[3]) : 0;
    auto connection = quillo::x11::connectToServer();
    if (!connection) {
        std::fputs("hostile_requestor: no display\n", stderr);
        return 2;
    }
    Requestor requestor(std::move(*connection));
    if (mode == "nonsense") {
        return requestor.nonsense(argv[2]);
    }
    if (mode == "flood") {
        return requestor.flood(argv[2], number);
    }
    if (mode == "stall" || mode == "vanish") {
        return requestor.stall(argv[2], number, mode == "vanish");
    }
    std::fputs(kUsage, stderr);
    return 2;
}
