// SPDX-License-Identifier: MIT
#include "platform/freedesktop/file_manager.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

#include "platform/freedesktop/session_bus.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

void openFolderOf(const QString& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).path()));
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
