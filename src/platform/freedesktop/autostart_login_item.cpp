// SPDX-License-Identifier: MIT
#include "platform/freedesktop/autostart_login_item.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <algorithm>
#include <utility>

#include "platform/freedesktop/desktop_entry.h"

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestEntryBytes = 64LL * 1024;

QByteArray entryFor(const QString& program) {
    return "[Desktop Entry]\nType=Application\nVersion=1.5\nName=Quillo\n"
           "Comment=Clipboard history\nIcon=com.quillohq.Quillo\nExec=" +
           execValue(program) +
           "\nTerminal=false\nStartupNotify=false\nX-GNOME-Autostart-enabled=true\n";
}

std::unexpected<Error> fileFailure(const char* what, const QString& path, const QString& why) {
    return failure(ErrorKind::NotPermitted,
                   QString::fromLatin1(what).arg(QDir::toNativeSeparators(path), why));
}

}  // namespace

QByteArray execValue(const QString& program) {
    QString argument;
    for (const QChar character : program) {
        if (u"\"`$\\"_s.contains(character)) {
            argument += u'\\';
        }
        argument += character;
        if (character == u'%') {
            argument += u'%';
        }
    }
    const bool isPlain = std::ranges::none_of(
        program, [](QChar c) { return c.isSpace() || u"\"'\\><~|&;$*?#()`"_s.contains(c); });
    if (!isPlain) {
        argument = u'"' + argument + u'"';
    }
    // As in every value of the type "string".
    argument.replace(u"\\"_s, u"\\\\"_s);
    argument.replace(u"\n"_s, u"\\n"_s).replace(u"\t"_s, u"\\t"_s).replace(u"\r"_s, u"\\r"_s);
    return argument.toUtf8();
}

AutostartLoginItem::AutostartLoginItem()
    : AutostartLoginItem(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                             u"/autostart/com.quillohq.Quillo.desktop"_s,
                         QCoreApplication::applicationFilePath()) {}

AutostartLoginItem::AutostartLoginItem(QString entryPath, QString program)
    : m_entryPath(std::move(entryPath)), m_program(std::move(program)) {}

bool AutostartLoginItem::isRegistered() const {
    QFile file(m_entryPath);
    // Opening a pipe would wait for its other end.
    if (!QFileInfo(m_entryPath).isFile() || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const auto entry = parseDesktopEntry(file.read(kLargestEntryBytes), {});
    return entry && !entry->isHidden && entry->isAutostarted;
}

Result<void> AutostartLoginItem::registerItem() {
    const QString folder = QFileInfo(m_entryPath).path();
    if (!QDir().mkpath(folder)) {
        return fileFailure("the folder %1 cannot be made%2", folder, QString());
    }
    const QByteArray entry = entryFor(m_program);
    QSaveFile file(m_entryPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(entry) != entry.size() || !file.commit()) {
        return fileFailure("the file %1 cannot be written: %2", m_entryPath, file.errorString());
    }
    return {};
}

Result<void> AutostartLoginItem::unregisterItem() {
    const QFileInfo info(m_entryPath);
    QFile file(m_entryPath);
    if ((info.exists() || info.isSymLink()) && !file.remove()) {
        return fileFailure("the file %1 cannot be removed: %2", m_entryPath, file.errorString());
    }
    return {};
}

}  // namespace quillo
