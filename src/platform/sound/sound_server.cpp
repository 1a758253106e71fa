// SPDX-License-Identifier: MIT
#include "platform/sound/sound_server.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <QByteArray>
#include <QFile>
#include <QStandardPaths>
#include <algorithm>

#include "base/unique_fd.h"

namespace quillo {
namespace {

// Empty where it is no socket of the file system: a list of servers, another machine.
QByteArray socketPath() {
    const QByteArray stated = qgetenv("PULSE_SERVER");
    if (stated.isEmpty()) {
        return QFile::encodeName(
                   QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)) +
               "/pulse/native";
    }
    if (stated.contains(' ')) {
        return {};
    }
    const QByteArray path = stated.startsWith("unix:") ? stated.sliced(5) : stated;
    return path.startsWith('/') ? path : QByteArray();
}

}  // namespace

bool soundServerListens() {
    const QByteArray path = socketPath();
    sockaddr_un address{};
    if (path.isEmpty() || path.size() >= qsizetype(sizeof address.sun_path)) {
        return true;
    }
    address.sun_family = AF_UNIX;
    std::ranges::copy(path, address.sun_path);
    const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
           0;
}

}  // namespace quillo
