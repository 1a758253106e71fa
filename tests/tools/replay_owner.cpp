// SPDX-License-Identifier: MIT
// Owns CLIPBOARD as a program would that was recorded, or one that behaves badly on demand.
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QThread>
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <list>
#include <optional>
#include <utility>
#include <vector>

#include "platform/x11/xcb_support.h"

using namespace Qt::StringLiterals;
using quillo::x11::AtomTable;
using quillo::x11::Connection;
using quillo::x11::XcbPtr;

namespace {

constexpr const char* kUsage =
    "usage: replay_owner [--manifest DIR] [--target NAME:TYPE:FILE]... [--refuse NAME]...\n"
    "  [--log FILE]          one line per request: the target's name\n"
    "  [--chunk BYTES]       larger replies go in parts of this size (INCR), default 65536\n"
    "  [--never-answer]      ignores every request but TARGETS\n"
    "  [--never-answer-targets]  ignores every request\n"
    "  [--delay-ms N]        waits before each answer\n"
    "  [--trickle MS]        one byte per part, so many milliseconds apart\n"
    "  [--die-mid-transfer]  ends after the second part of a large reply\n"
    "  [--announce BYTES]    announces another size than a large reply has\n"
    "  [--invent N:LENGTH]   offers so many more targets, with names of that length\n"
    "  [--answer-in NAME]    answers in a property of that name instead of the one asked for\n"
    "  [--format BITS]       claims that the answers consist of 8, 16 or 32 bit units\n"
    "  [--twice]             answers everything twice\n"
    "  [--unasked]           says before each answer that others are there which nobody asked for\n"
    "  [--retake N]          takes the selection anew at each of the first N requests\n"
    "  [--follow]            copies once for each line of standard input, which holds the targets\n"
    "                        NAME:TYPE:FILE with tabs between them, and ends with the input\n"
    "  [--save-each]         then asks the clipboard manager to save each, as SIGUSR2 does\n"
    "Prints 'ready' when it owns the selection, 'lost' when another program takes it and "
    "'x-error'\n"
    "for an error of the display server; with --follow also 'asked' at the first request for a "
    "copy.\n"
    "SIGUSR1 clears it. SIGUSR2 asks the clipboard manager to save it and prints 'saved' or\n"
    "'refused'. SIGTERM ends.\n";

const QList<QByteArray> kOwnTargets = {"TARGETS", "TIMESTAMP"};

struct Reply {
    QByteArray type;
    QByteArray bytes;
};

struct Options {
    QList<QByteArray> order;
    QHash<QByteArray, Reply> replies;
    QString logFile;
    qsizetype chunk = 65536;
    int delayMs = 0;
    bool neverAnswer = false;
    bool neverAnswerTargets = false;
    bool trickle = false;
    int trickleMs = 0;
    bool dieMidTransfer = false;
    std::optional<std::uint32_t> announced;
    QByteArray answerIn;
    std::uint8_t format = 0;  ///< The true one where it is 0.
    bool twice = false;
    bool unasked = false;
    int retakes = 0;
    bool follow = false;
    bool saveEach = false;
};

struct Transfer {
    xcb_window_t requestor = 0;
    xcb_atom_t property = 0;
    xcb_atom_t type = 0;
    QByteArray bytes;
    qsizetype sent = 0;
    int parts = 0;
};

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "replay_owner: cannot read %s\n", qPrintable(path));
        std::exit(2);
    }
    return file.readAll();
}

void loadManifest(Options& options, const QString& folder) {
    const QJsonObject manifest =
        QJsonDocument::fromJson(contentsOf(folder + "/manifest.json"_L1)).object();
    for (const QJsonValue value : manifest.value("targets"_L1).toArray()) {
        options.order.append(value.toString().toUtf8());
    }
    for (const QJsonValue value : manifest.value("data"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        if (entry.contains("file"_L1) && entry.value("format"_L1).toInt() == 8) {
            options.replies.insert(entry.value("target"_L1).toString().toUtf8(),
                                   {entry.value("type"_L1).toString().toUtf8(),
                                    contentsOf(folder + u'/' + entry.value("file"_L1).toString())});
        }
    }
}

void addTarget(Options& options, const QString& argument) {
    // The name of a target may hold colons itself; type and file never do.
    const QStringList parts = argument.split(u':');
    const QByteArray name = parts.first(parts.size() - 2).join(u':').toUtf8();
    options.order.append(name);
    options.replies.insert(name, {parts.at(parts.size() - 2).toUtf8(), contentsOf(parts.last())});
}

void inventTargets(Options& options, const QStringList& countAndLength) {
    for (int i = 0; i < countAndLength.value(0).toInt(); ++i) {
        options.order.append(
            (QByteArray::number(i) + '-').leftJustified(countAndLength.value(1).toInt(), 'x'));
    }
}

Options parse(const QStringList& arguments) {
    Options options;
    options.order = kOwnTargets;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& name = arguments.at(i);
        const QString value = arguments.value(i + 1);
        if (name == "--never-answer"_L1) {
            options.neverAnswer = true;
        } else if (name == "--never-answer-targets"_L1) {
            options.neverAnswer = options.neverAnswerTargets = true;
        } else if (name == "--die-mid-transfer"_L1) {
            options.dieMidTransfer = true;
        } else if (name == "--twice"_L1) {
            options.twice = true;
        } else if (name == "--unasked"_L1) {
            options.unasked = true;
        } else if (name == "--follow"_L1) {
            options.follow = true;
        } else if (name == "--save-each"_L1) {
            options.saveEach = true;
        } else if (value.isEmpty()) {
            std::fputs(kUsage, stderr);
            std::exit(2);
        } else {
            ++i;
            if (name == "--manifest"_L1) {
                options.order.clear();
                loadManifest(options, value);
            } else if (name == "--target"_L1) {
                addTarget(options, value);
            } else if (name == "--refuse"_L1) {
                options.order.append(value.toUtf8());
            } else if (name == "--log"_L1) {
                options.logFile = value;
            } else if (name == "--chunk"_L1) {
                options.chunk = value.toLongLong();
            } else if (name == "--delay-ms"_L1) {
                options.delayMs = value.toInt();
            } else if (name == "--trickle"_L1) {
                options.trickle = true;
                options.trickleMs = value.toInt();
            } else if (name == "--announce"_L1) {
                options.announced = value.toUInt();
            } else if (name == "--invent"_L1) {
                inventTargets(options, value.split(u':'));
            } else if (name == "--answer-in"_L1) {
                options.answerIn = value.toUtf8();
            } else if (name == "--format"_L1) {
                options.format = static_cast<std::uint8_t>(value.toUInt());
            } else if (name == "--retake"_L1) {
                options.retakes = value.toInt();
            } else {
                std::fputs(kUsage, stderr);
                std::exit(2);
            }
        }
    }
    return options;
}

class Owner {
public:
    Owner(Connection connection, Options options)
        : m_connection(std::move(connection)),
          m_options(std::move(options)),
          m_atoms(m_connection.get()),
          m_clipboard(m_atoms.atom("CLIPBOARD")),
          m_window(xcb_generate_id(m_connection.get())) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_connection.root(),
                          0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
    }

    int run() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int number : {SIGTERM, SIGUSR1, SIGUSR2}) {
            sigaddset(&signals, number);
        }
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        const int signalFd = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
        if (!m_options.follow) {
            takeSelection();
        }
        while (xcb_connection_has_error(m_connection.get()) == 0) {
            while (
                const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
                handle(*event);
            }
            xcb_flush(m_connection.get());
            std::array<pollfd, 3> descriptors{
                {{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0},
                 {signalFd, POLLIN, 0},
                 {m_options.follow ? STDIN_FILENO : -1, POLLIN, 0}}};
            ::poll(descriptors.data(), descriptors.size(), -1);
            if (descriptors[2].revents != 0 && !readCopies()) {
                return 0;
            }
            signalfd_siginfo info{};
            while (::read(signalFd, &info, sizeof info) == sizeof info) {
                if (info.ssi_signo == SIGTERM) {
                    sayLateErrors();
                    return 0;
                }
                handleSignal(static_cast<int>(info.ssi_signo));
            }
        }
        return 1;
    }

private:
    void sayLateErrors() {
        quillo::x11::waitForServer(m_connection.get());
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            if (event->response_type == 0) {
                handle(*event);
            }
        }
    }

    void handleSignal(int number) {
        if (number == SIGUSR1) {
            xcb_set_selection_owner(m_connection.get(), XCB_WINDOW_NONE, m_clipboard, m_time);
        } else {
            askToSave();
        }
        xcb_flush(m_connection.get());
    }

    void askToSave() {
        xcb_convert_selection(m_connection.get(), m_window, m_atoms.atom("CLIPBOARD_MANAGER"),
                              m_atoms.atom("SAVE_TARGETS"), m_atoms.atom("REPLAY_SAVE"), m_time);
    }

    /// An append of nothing brings the server's time; with it the selection is taken.
    void takeSelection() {
        m_time = XCB_CURRENT_TIME;
        m_wasAsked = false;
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_APPEND, m_window, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, 0, nullptr);
    }

    /// Copies what the lines that have come whole say; false at the end of the input.
    bool readCopies() {
        std::array<char, 4096> bytes{};
        const ssize_t size = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        m_input.append(bytes.data(), std::max<ssize_t>(size, 0));
        for (qsizetype end = 0; (end = m_input.indexOf('\n')) >= 0; m_input.remove(0, end + 1)) {
            m_options.order = kOwnTargets;
            m_options.replies.clear();
            for (const QString& target : QString::fromUtf8(m_input.first(end)).split(u'\t')) {
                addTarget(m_options, target);
            }
            takeSelection();
        }
        return size > 0;
    }

    void handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7f) {
            case XCB_PROPERTY_NOTIFY:
                propertyChanged(reinterpret_cast<const xcb_property_notify_event_t&>(event));
                break;
            case XCB_SELECTION_REQUEST:
                requested(reinterpret_cast<const xcb_selection_request_event_t&>(event));
                break;
            case XCB_SELECTION_NOTIFY: {
                const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
                say(answer.property != XCB_ATOM_NONE ? "saved" : "refused");
                break;
            }
            case 0:
                say("x-error");
                break;
            case XCB_SELECTION_CLEAR:
                say("lost");
                break;
            default:
                break;
        }
    }

    void propertyChanged(const xcb_property_notify_event_t& event) {
        if (event.window == m_window && m_time == XCB_CURRENT_TIME) {
            m_time = event.time;
            xcb_set_selection_owner(m_connection.get(), m_window, m_clipboard, m_time);
            const XcbPtr<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
                m_connection.get(), xcb_get_selection_owner(m_connection.get(), m_clipboard),
                nullptr));
            say(owner && owner->owner == m_window ? "ready" : "failed");
            if (m_options.saveEach) {
                askToSave();
            }
            return;
        }
        if (event.state == XCB_PROPERTY_DELETE) {
            for (auto it = m_transfers.begin(); it != m_transfers.end(); ++it) {
                if (it->requestor == event.window && it->property == event.atom) {
                    if (sendPart(*it)) {
                        m_transfers.erase(it);
                    }
                    return;
                }
            }
        }
    }

    void requested(xcb_selection_request_event_t request) {
        const QByteArray name = m_atoms.name(request.target);
        log(name);
        if (m_options.follow && !std::exchange(m_wasAsked, true)) {
            say("asked");
        }
        if (m_options.neverAnswer && (m_options.neverAnswerTargets || name != "TARGETS")) {
            return;
        }
        if (m_options.delayMs > 0) {
            QThread::msleep(static_cast<unsigned long>(m_options.delayMs));
        }
        if (m_options.retakes > 0) {
            --m_options.retakes;
            takeSelection();
        }
        if (m_options.unasked) {
            answerWhatNobodyAsked(request);
        }
        if (!m_options.answerIn.isEmpty()) {
            request.property = m_atoms.atom(m_options.answerIn);
        }
        for (int i = 0; i < (m_options.twice ? 2 : 1); ++i) {
            answer(request, name);
        }
    }

    void answer(const xcb_selection_request_event_t& request, const QByteArray& name) {
        if (name == "TARGETS") {
            QByteArray atoms;
            for (const QByteArray& target : m_options.order) {
                const xcb_atom_t atom = m_atoms.atom(target);
                atoms.append(reinterpret_cast<const char*>(&atom), sizeof atom);
            }
            write(request, XCB_ATOM_ATOM, 32, atoms);
            notify(request, true);
            return;
        }
        const auto reply = m_options.replies.constFind(name);
        if (reply == m_options.replies.cend()) {
            notify(request, false);
            return;
        }
        send(request, *reply);
        notify(request, true);
    }

    /// Refusals and answers for other targets, other properties and another selection.
    void answerWhatNobodyAsked(const xcb_selection_request_event_t& request) {
        auto other = request;
        other.target = XCB_ATOM_CURSOR;
        notify(other, false);
        notify(other, true);
        other.selection = XCB_ATOM_SECONDARY;
        notify(other, true);
        other = request;
        other.property = XCB_ATOM_WM_NAME;
        notify(other, true);
    }

    void write(const xcb_selection_request_event_t& request, xcb_atom_t type, std::uint8_t format,
               const QByteArray& bytes) {
        const std::uint8_t claimed = m_options.format != 0 ? m_options.format : format;
        xcb_change_property(
            m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, type,
            claimed, static_cast<std::uint32_t>(bytes.size() * 8 / claimed), bytes.constData());
    }

    void send(const xcb_selection_request_event_t& request, const Reply& reply) {
        const xcb_atom_t type = m_atoms.atom(reply.type);
        if (reply.bytes.size() <= m_options.chunk && !m_options.trickle) {
            write(request, type, 8, reply.bytes);
            return;
        }
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection.get(), request.requestor, XCB_CW_EVENT_MASK,
                                     &events);
        const auto size =
            m_options.announced.value_or(static_cast<std::uint32_t>(reply.bytes.size()));
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, m_atoms.atom("INCR"), 32, 1, &size);
        m_transfers.push_back({request.requestor, request.property, type, reply.bytes, 0, 0});
    }

    bool sendPart(Transfer& transfer) {
        if (m_options.dieMidTransfer && transfer.parts == 2) {
            std::_Exit(3);
        }
        if (m_options.trickle) {
            QThread::msleep(static_cast<unsigned long>(m_options.trickleMs));
        }
        const qsizetype size = std::min(m_options.trickle ? 1 : m_options.chunk,
                                        transfer.bytes.size() - transfer.sent);
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, transfer.requestor,
                            transfer.property, transfer.type, 8, static_cast<std::uint32_t>(size),
                            transfer.bytes.constData() + transfer.sent);
        transfer.sent += size;
        ++transfer.parts;
        return size == 0;
    }

    void notify(const xcb_selection_request_event_t& request, bool isMet) {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = isMet ? request.property : xcb_atom_t{XCB_ATOM_NONE};
        std::array<char, 32> wire{};
        std::copy_n(reinterpret_cast<const char*>(&event), sizeof event, wire.data());
        xcb_send_event(m_connection.get(), 0, request.requestor, 0, wire.data());
    }

    void log(const QByteArray& name) {
        if (!m_options.logFile.isEmpty()) {
            QFile file(m_options.logFile);
            if (file.open(QIODevice::Append)) {
                file.write(name + '\n');
            }
        }
    }

    static void say(const char* word) {
        std::puts(word);
        std::fflush(stdout);
    }

    Connection m_connection;
    Options m_options;
    AtomTable m_atoms;
    xcb_atom_t m_clipboard;
    xcb_window_t m_window;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    bool m_wasAsked = false;
    QByteArray m_input;
    std::list<Transfer> m_transfers;
};

}  // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    Options options = parse(arguments);
    auto connection = quillo::x11::connectToServer();
    if (!connection) {
        std::fputs("replay_owner: no display\n", stderr);
        return 2;
    }
    return Owner(std::move(*connection), std::move(options)).run();
}
