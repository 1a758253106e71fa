// SPDX-License-Identifier: MIT
#include "base/logging.h"

#include <sys/stat.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <QByteArray>
#include <QString>
#include <cstdio>

namespace quillo {
namespace {

int journalPriority(QtMsgType type) {
    switch (type) {
        case QtDebugMsg:
            return LOG_DEBUG;
        case QtInfoMsg:
            return LOG_INFO;
        case QtWarningMsg:
            return LOG_WARNING;
        case QtCriticalMsg:
            return LOG_ERR;
        case QtFatalMsg:
            return LOG_CRIT;
    }
    return LOG_INFO;
}

const char* levelWord(QtMsgType type) {
    switch (type) {
        case QtDebugMsg:
            return "debug";
        case QtInfoMsg:
            return "info";
        case QtWarningMsg:
            return "warning";
        case QtCriticalMsg:
            return "error";
        case QtFatalMsg:
            return "fatal";
    }
    return "info";
}

void toStandardError(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QByteArray line = QByteArray(levelWord(type)) + " [" +
                            (context.category != nullptr ? context.category : "default") + "] " +
                            message.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
}

void toJournal(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QByteArray text = message.toUtf8();
    const int status =
        sd_journal_send("MESSAGE=%s", text.constData(), "PRIORITY=%i", journalPriority(type),
                        "SYSLOG_IDENTIFIER=%s", "quillo", "QUILLO_CATEGORY=%s",
                        context.category != nullptr ? context.category : "default", nullptr);
    if (status < 0) {
        toStandardError(type, context, message);
    }
}

// systemd.exec(5): JOURNAL_STREAM names the device and inode of a stream that goes to the journal.
bool standardErrorIsTheJournal() {
    const QList<QByteArray> parts = qgetenv("JOURNAL_STREAM").split(':');
    struct stat status = {};
    return parts.size() == 2 && fstat(STDERR_FILENO, &status) == 0 &&
           parts[0].toULongLong() == status.st_dev && parts[1].toULongLong() == status.st_ino;
}

}  // namespace

void installLogHandler() {
    qInstallMessageHandler(standardErrorIsTheJournal() ? toJournal : toStandardError);
}

}  // namespace quillo
