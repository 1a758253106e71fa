// SPDX-License-Identifier: MIT
// Asks the owner of CLIPBOARD as no well-behaved program does. Every mode says one word when it
// has done what it is for; 'stall' then waits to be killed.
// usage: hostile_requestor stall TARGET N   N windows take one part of a large reply: 'stalled'
//        hostile_requestor vanish TARGET N  the same, then all are destroyed: 'vanished'
//        hostile_requestor nonsense TARGET  requests that mean nothing: 'done' N-ANSWERS
//        hostile_requestor flood TARGET MS  a thousand requests a second: 'flooded' N-ANSWERS
#include <QList>
#include <QThread>
#include <cstdlib>
#include <vector>

#include "tools/x_client.h"

namespace {

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

class Requestor final : public quillo::testing::XClient {
public:
    using XClient::XClient;

    int stall(const QByteArray& target, int count, bool vanishes) {
        std::vector<xcb_window_t> windows;
        for (int i = 0; i < count; ++i) {
            windows.push_back(makeWindow());
            ask({"CLIPBOARD", atom(target), atom("PASTED"), windows.back()});
        }
        for (int taken = 0; taken < count;) {
            const auto event = waitForEvent();
            if (!event) {
                return 1;
            }
            // The announcement is the first that is deleted; what then comes is the first part.
            if (typeOf(*event) == XCB_SELECTION_NOTIFY) {
                const auto& answer = as<xcb_selection_notify_event_t>(*event);
                xcb_delete_property(server(), answer.requestor, atom("PASTED"));
                taken += 1;
            }
        }
        if (vanishes) {
            for (const xcb_window_t window : windows) {
                xcb_destroy_window(server(), window);
            }
        }
        quillo::x11::waitForServer(server());
        sayCount(vanishes ? "vanished" : "stalled", count);
        while (!vanishes && waitForEvent()) {
        }
        return 0;
    }

    int flood(const QByteArray& target, int milliseconds) {
        const xcb_window_t window = makeWindow();
        int answers = 0;
        for (int passed = 0; passed < milliseconds; passed += 10) {
            for (int i = 0; i < 10; ++i) {
                ask({"CLIPBOARD", atom(target), atom("PASTED"), window});
            }
            xcb_flush(server());
            answers += drain();
            QThread::msleep(10);
        }
        sayCount("flooded", answers + fence(window));
        return 0;
    }

    int nonsense(const QByteArray& target) {
        const xcb_window_t window = makeWindow();
        const xcb_atom_t wanted = atom(target);
        const xcb_atom_t property = atom("PASTED");
        const xcb_atom_t multiple = atom("MULTIPLE");
        constexpr xcb_window_t kNoWindow = 0x1ffffff0;
        for (const char* selection : {"CLIPBOARD", "CLIPBOARD_MANAGER", "PRIMARY"}) {
            for (const xcb_window_t requestor : {window, kNoWindow, root(), ownerOf(selection)}) {
                for (const char* name :
                     {"NO_SUCH_TARGET", "MULTIPLE", "SAVE_TARGETS", "TARGETS", "DELETE",
                      "INSERT_SELECTION", "INSERT_PROPERTY", "TIMESTAMP"}) {
                    ask({selection, atom(name), property, requestor});
                    ask({selection, atom(name), XCB_ATOM_NONE, requestor});
                }
                ask({selection, wanted, property, requestor});
                ask({selection, wanted, XCB_ATOM_NONE, requestor});
            }
        }
        const QList<Pairs> lists = listsFor(wanted, property, multiple);
        for (const Pairs& pairs : lists) {
            const xcb_atom_t holder = atom(pairs.name);
            xcb_change_property(server(), XCB_PROP_MODE_REPLACE, window, holder, pairs.type,
                                pairs.format, static_cast<std::uint32_t>(pairs.atoms.size()),
                                pairs.atoms.data());
            ask({"CLIPBOARD", multiple, holder, window});
            ask({"CLIPBOARD_MANAGER", atom("SAVE_TARGETS"), holder, window});
        }
        sayCount("done", fence(window));
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

    void ask(const Question& question) {
        xcb_convert_selection(server(), question.requestor, atom(question.selection),
                              question.target, question.property, XCB_CURRENT_TIME);
    }

    /// Asks once as one should, which is answered after everything before it. Gives the number of
    /// answers that came until then.
    int fence(xcb_window_t window) {
        const xcb_atom_t last = atom("FENCE");
        ask({"CLIPBOARD", atom("TARGETS"), last, window});
        for (int answers = 0;;) {
            const auto event = waitForEvent();
            if (!event) {
                return -1;
            }
            if (typeOf(*event) != XCB_SELECTION_NOTIFY) {
                continue;
            }
            ++answers;
            if (as<xcb_selection_notify_event_t>(*event).property == last) {
                return answers;
            }
        }
    }

    static void sayCount(const QByteArray& word, int count) {
        say(word + ' ' + QByteArray::number(count));
    }
    int drain() {
        int answers = 0;
        while (const Event event = nextEvent()) {
            answers += typeOf(*event) == XCB_SELECTION_NOTIFY ? 1 : 0;
        }
        return answers;
    }
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
    return 2;
}
