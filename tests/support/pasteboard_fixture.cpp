// SPDX-License-Identifier: MIT
#include "support/pasteboard_fixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quillo::testing {

namespace {

QDir clipboardFolder() {
    return QDir(QStringLiteral(QUILLO_TEST_DATA "/clipboard"));
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

QList<CopiedTarget> recordedClipboard(const QString& name) {
    const QDir folder(clipboardFolder().filePath(name));
    const QJsonObject manifest =
        QJsonDocument::fromJson(contentsOf(folder.filePath(u"manifest.json"_s))).object();
    QHash<QByteArray, RawReply> replies;
    for (const QJsonValue value : manifest.value("data"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        if (entry.contains("file"_L1)) {
            const QString file = entry.value("file"_L1).toString();
            replies.insert(
                entry.value("target"_L1).toString().toUtf8(),
                {entry.value("type"_L1).toString().toUtf8(), contentsOf(folder.filePath(file))});
        }
    }
    QList<CopiedTarget> targets;
    for (const QJsonValue value : manifest.value("targets"_L1).toArray()) {
        const QByteArray target = value.toString().toUtf8();
        const auto reply = replies.constFind(target);
        targets.append({target, reply != replies.cend() ? std::optional(*reply) : std::nullopt});
    }
    return targets;
}

QStringList recordedClipboardNames() {
    return clipboardFolder().entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

}  // namespace quillo::testing
