// SPDX-License-Identifier: MIT
#include "model/store/sqlite_error.h"

#include <sqlite3.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

ErrorKind kindFromSystemError(int systemError) {
    switch (systemError) {
        case ENOSPC:
        case EDQUOT:
            return ErrorKind::DiskFull;
        case EACCES:
        case EPERM:
        case EROFS:
            return ErrorKind::NotPermitted;
        case EAGAIN:
        case EBUSY:
            return ErrorKind::Busy;
        case EISDIR:
            return ErrorKind::Malformed;
        default:
            return ErrorKind::Failed;
    }
}

}  // namespace

ErrorKind errorKindFromSqlite(int resultCode, int systemError) {
    switch (resultCode & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_PROTOCOL:
            return ErrorKind::Busy;
        case SQLITE_FULL:
            return ErrorKind::DiskFull;
        case SQLITE_PERM:
        case SQLITE_AUTH:
        case SQLITE_READONLY:
            return ErrorKind::NotPermitted;
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return ErrorKind::Malformed;
        case SQLITE_TOOBIG:
            return ErrorKind::TooLarge;
        case SQLITE_IOERR:
        case SQLITE_CANTOPEN:
            return kindFromSystemError(systemError);
        default:
            return ErrorKind::Failed;
    }
}

bool isFailureOfOneRow(int resultCode) {
    switch (resultCode & 0xff) {
        case SQLITE_TOOBIG:
        case SQLITE_CONSTRAINT:
        case SQLITE_MISMATCH:
            return true;
        default:
            return false;
    }
}

Error latestSqliteError(sqlite3* handle) {
    const int code = sqlite3_extended_errcode(handle);
    return {errorKindFromSqlite(code, sqlite3_system_errno(handle)),
            QString::fromUtf8(sqlite3_errmsg(handle)) + u" (SQLite %1)"_s.arg(code)};
}

}  // namespace quillo
