// SPDX-License-Identifier: MIT
// Owns CLIPBOARD as a program would that was recorded, or one that behaves badly on demand.
// usage: replay_owner [--manifest DIR] [--target NAME:TYPE:FILE]... [--refuse NAME]...
//   [--log FILE]          one line per request: the target's name
//   [--chunk BYTES]       larger replies go in parts of this size (INCR), default 65536
//   [--never-answer]      ignores every request but TARGETS
//   [--never-answer-targets]  ignores every request
//   [--delay-ms N]        waits before each answer
//   [--trickle MS]        one byte per part, so many milliseconds apart
//   [--die-mid-transfer]  ends after the second part of a large reply
//   [--announce BYTES]    announces another size than a large reply has
//   [--invent N:LENGTH]   offers so many more targets, with names of that length
//   [--answer-in NAME]    answers in a property of that name instead of the one asked for
//   [--format BITS]       claims that the answers consist of 8, 16 or 32 bit units
//   [--twice]             answers everything twice
//   [--unasked]           says before each answer that others are there which nobody asked for
//   [--retake N]          takes the selection anew at each of the first N requests
//   [--follow]            copies once for each line of standard input, which holds the targets
//                         NAME:TYPE:FILE with tabs between them, and ends with the input
//   [--save-each]         then asks the clipboard manager to save each, as SIGUSR2 does
// Prints 'ready' when it owns the selection, 'lost' when another program takes it and 'x-error'
// for an error of the display server; with --follow also 'asked' at the first request for a copy.
// SIGUSR1 clears it. SIGUSR2 asks the clipboard manager to save it and prints 'saved' or
// 'refused'. SIGTERM ends.
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QThread>
#include <algorithm>
#include <array>
#include <csignal>
#include <list>

#include "tools/x_client.h"

using namespace Qt::StringLiterals;

namespace {

const QList<QByteArray> kOwnTargets = {"TARGETS", "TIMESTAMP"};

struct Reply {
    QByteArray type;
    QByteArray bytes;
};

const QSet<QString> kFlags{u"--never-answer"_s,     u"--never-answer-targets"_s,
                           u"--die-mid-transfer"_s, u"--twice"_s,
                           u"--unasked"_s,          u"--follow"_s,
                           u"--save-each"_s};
const QSet<QString> kValues{u"--log"_s,      u"--chunk"_s,     u"--delay-ms"_s, u"--trickle"_s,
                            u"--announce"_s, u"--answer-in"_s, u"--format"_s,   u"--retake"_s};

struct Options {
    QList<QByteArray> order = kOwnTargets;
    QHash<QByteArray, Reply> replies;
    QHash<QString, QString> given;

    bool has(const QString& name) const { return given.contains(name); }
    qint64 number(const QString& name, qint64 otherwise = 0) const {
        return has(name) ? given.value(name).toLongLong() : otherwise;
    }
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

[[noreturn]] void refuse() {
    std::fputs("replay_owner: no such option\n", stderr);
    std::exit(2);
}

void addContents(Options& options, const QString& name, const QString& value) {
    if (name == "--manifest"_L1) {
        options.order.clear();
        loadManifest(options, value);
    } else if (name == "--target"_L1) {
        addTarget(options, value);
    } else if (name == "--refuse"_L1) {
        options.order.append(value.toUtf8());
    } else if (name == "--invent"_L1) {
        inventTargets(options, value.split(u':'));
    } else {
        refuse();
    }
}

Options parse(const QStringList& arguments) {
    Options options;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& name = arguments.at(i);
        if (kFlags.contains(name)) {
            options.given.insert(name, {});
            continue;
        }
        const QString value = arguments.value(++i);
        if (value.isEmpty()) {
            refuse();
        }
        if (kValues.contains(name)) {
            options.given.insert(name, value);
        } else {
            addContents(options, name, value);
        }
    }
    return options;
}

class Owner final : public quillo::testing::XClient {
public:
    Owner(quillo::x11::Connection connection, Options options)
        : XClient(std::move(connection)),
          m_options(std::move(options)),
          m_clipboard(atom("CLIPBOARD")),
          m_window(makeWindow(XCB_EVENT_MASK_PROPERTY_CHANGE)) {}

    int run() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int number : {SIGTERM, SIGUSR1, SIGUSR2}) {
            sigaddset(&signals, number);
        }
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        const int signalFd = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
        if (!m_options.has(u"--follow"_s)) {
            takeSelection();
        }
        while (xcb_connection_has_error(server()) == 0) {
            while (const Event event = nextEvent()) {
                handle(*event);
            }
            xcb_flush(server());
            std::array<pollfd, 3> descriptors{
                {{xcb_get_file_descriptor(server()), POLLIN, 0},
                 {signalFd, POLLIN, 0},
                 {m_options.has(u"--follow"_s) ? STDIN_FILENO : -1, POLLIN, 0}}};
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
        quillo::x11::waitForServer(server());
        while (const Event event = nextEvent()) {
            if (event->response_type == 0) {
                handle(*event);
            }
        }
    }

    void handleSignal(int number) {
        if (number == SIGUSR1) {
            xcb_set_selection_owner(server(), XCB_WINDOW_NONE, m_clipboard, m_time);
        } else {
            askToSave();
        }
        xcb_flush(server());
    }

    void askToSave() {
        xcb_convert_selection(server(), m_window, atom("CLIPBOARD_MANAGER"), atom("SAVE_TARGETS"),
                              atom("REPLAY_SAVE"), m_time);
    }

    /// An append of nothing brings the server's time; with it the selection is taken.
    void takeSelection() {
        m_time = XCB_CURRENT_TIME;
        m_wasAsked = false;
        xcb_change_property(server(), XCB_PROP_MODE_APPEND, m_window, XCB_ATOM_WM_NAME,
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
        switch (typeOf(event)) {
            case XCB_PROPERTY_NOTIFY:
                propertyChanged(as<xcb_property_notify_event_t>(event));
                break;
            case XCB_SELECTION_REQUEST:
                requested(as<xcb_selection_request_event_t>(event));
                break;
            case XCB_SELECTION_NOTIFY: {
                const auto& answer = as<xcb_selection_notify_event_t>(event);
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
            xcb_set_selection_owner(server(), m_window, m_clipboard, m_time);
            say(ownerOf("CLIPBOARD") == m_window ? "ready" : "failed");
            if (m_options.has(u"--save-each"_s)) {
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
        const QByteArray name = nameOf(request.target);
        log(name);
        if (m_options.has(u"--follow"_s) && !std::exchange(m_wasAsked, true)) {
            say("asked");
        }
        if (m_options.has(u"--never-answer-targets"_s) ||
            (m_options.has(u"--never-answer"_s) && name != "TARGETS")) {
            return;
        }
        QThread::msleep(static_cast<unsigned long>(m_options.number(u"--delay-ms"_s)));
        if (m_retakes < m_options.number(u"--retake"_s)) {
            ++m_retakes;
            takeSelection();
        }
        if (m_options.has(u"--unasked"_s)) {
            answerWhatNobodyAsked(request);
        }
        if (m_options.has(u"--answer-in"_s)) {
            request.property = atom(m_options.given.value(u"--answer-in"_s).toUtf8());
        }
        for (int i = 0; i < (m_options.has(u"--twice"_s) ? 2 : 1); ++i) {
            answer(request, name);
        }
    }

    void answer(const xcb_selection_request_event_t& request, const QByteArray& name) {
        if (name == "TARGETS") {
            QByteArray atoms;
            for (const QByteArray& target : m_options.order) {
                const xcb_atom_t offered = atom(target);
                atoms.append(reinterpret_cast<const char*>(&offered), sizeof offered);
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
        const auto claimed = static_cast<std::uint8_t>(m_options.number(u"--format"_s, format));
        xcb_change_property(server(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            type, claimed, static_cast<std::uint32_t>(bytes.size() * 8 / claimed),
                            bytes.constData());
    }

    void send(const xcb_selection_request_event_t& request, const Reply& reply) {
        const xcb_atom_t type = atom(reply.type);
        if (reply.bytes.size() <= partSize()) {
            write(request, type, 8, reply.bytes);
            return;
        }
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(server(), request.requestor, XCB_CW_EVENT_MASK, &events);
        const auto size =
            static_cast<std::uint32_t>(m_options.number(u"--announce"_s, reply.bytes.size()));
        xcb_change_property(server(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            atom("INCR"), 32, 1, &size);
        m_transfers.push_back({request.requestor, request.property, type, reply.bytes, 0, 0});
    }

    /// Larger replies go in parts; a trickle is never sent at once.
    qsizetype partSize() const {
        return m_options.has(u"--trickle"_s) ? 1 : m_options.number(u"--chunk"_s, 65536);
    }

    bool sendPart(Transfer& transfer) {
        if (m_options.has(u"--die-mid-transfer"_s) && transfer.parts == 2) {
            std::_Exit(3);
        }
        QThread::msleep(static_cast<unsigned long>(m_options.number(u"--trickle"_s)));
        const qsizetype size = std::min(partSize(), transfer.bytes.size() - transfer.sent);
        xcb_change_property(server(), XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property,
                            transfer.type, 8, static_cast<std::uint32_t>(size),
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
        xcb_send_event(server(), 0, request.requestor, 0, wire.data());
    }

    void log(const QByteArray& name) {
        QFile file(m_options.given.value(u"--log"_s));
        if (m_options.has(u"--log"_s) && file.open(QIODevice::Append)) {
            file.write(name + '\n');
        }
    }

    Options m_options;
    xcb_atom_t m_clipboard;
    xcb_window_t m_window;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    bool m_wasAsked = false;
    int m_retakes = 0;
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
