// SPDX-License-Identifier: MIT
#include "app/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstring>

namespace quillo {

Result<InstanceLock> InstanceLock::acquire(const QString& folder) {
    QDir().mkpath(folder);
    const QByteArray path = QFile::encodeName(folder + QStringLiteral("/quillo.lock"));
    UniqueFd file(::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isValid()) {
        return failure(ErrorKind::Failed, QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        const bool isHeld = errno == EWOULDBLOCK;
        return failure(isHeld ? ErrorKind::Busy : ErrorKind::Failed,
                       QString::fromLocal8Bit(std::strerror(errno)));
    }
    return InstanceLock(std::move(file));
}

}  // namespace quillo
