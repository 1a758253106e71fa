// SPDX-License-Identifier: MIT
#include "platform/freedesktop/file_manager.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>

#include "platform/freedesktop/session_bus.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

void openFolderOf(const QString& path) {
    (void)openAddress(QUrl::fromLocalFile(QFileInfo(path).path()));
}

QDBusMessage questionFor(const QString& path) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    const QString address = QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    call.setArguments({QStringList{address}, QString()});
    return call;
}

}  // namespace

// Not QDesktopServices: where it finds no program it writes the address into the log. What the
// program that opens it says is as little for the log: it names the address, too.
bool openAddress(const QUrl& address) {
    const QString text = QString::fromLatin1(address.toEncoded());
    const QString browser = qEnvironmentVariable("BROWSER").section(u':', 0, 0);
    const QList<QStringList> commands{{u"xdg-open"_s}, {u"gio"_s, u"open"_s}, {browser}};
    return std::ranges::any_of(commands, [&](QStringList command) {
        QProcess process;
        process.setProgram(QStandardPaths::findExecutable(command.takeFirst()));
        process.setArguments(command << text);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        return !process.program().isEmpty() && process.startDetached();
    });
}

void showInFolder(const QString& path) {
    if (sessionBusAddress().isEmpty()) {
        openFolderOf(path);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(questionFor(path)), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, path] {
        if (QDBusPendingReply<>(*watcher).isError()) {
            openFolderOf(path);
        }
        watcher->deleteLater();
    });
}

}  // namespace quillo
