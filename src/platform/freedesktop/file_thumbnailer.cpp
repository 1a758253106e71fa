// SPDX-License-Identifier: MIT
#include "platform/freedesktop/file_thumbnailer.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QMimeDatabase>
#include <utility>

#include "base/logging.h"
#include "platform/freedesktop/session_bus.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcThumbnails, "ThumbnailService")

const QString kService = u"org.freedesktop.thumbnails.Thumbnailer1"_s;
const QString kPath = u"/org/freedesktop/thumbnails/Thumbnailer1"_s;
const QString kScheduler = u"foreground"_s;

QDBusMessage callOf(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, method);
    call.setArguments(arguments);
    return call;
}

QString connectionName(const QObject* owner) {
    return u"quillo-thumbnails-%1"_s.arg(quintptr(owner));
}

}  // namespace

FileThumbnailer::FileThumbnailer(const ImageCodec& codec, Options options)
    : m_cache(options.cacheFolder, codec), m_options(std::move(options)) {}

FileThumbnailer::~FileThumbnailer() {
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(connectionName(this));
}

void FileThumbnailer::request(quint64 ticket, const QString& path, int sidePx) {
    if (!QFileInfo::exists(path)) {
        Q_EMIT finished(ticket, {});
        return;
    }
    if (const auto image = m_cache.find(path, sidePx)) {
        Q_EMIT finished(ticket, *image);
        return;
    }
    if (m_cache.isKnownToFail(path) || !connectToBus()) {
        Q_EMIT finished(ticket, m_cache.findSmaller(path, sidePx).value_or(QImage()));
        return;
    }
    queue(ticket, path, sidePx);
}

// Tried once: a session has its bus from the start or never.
bool FileThumbnailer::connectToBus() {
    const QString address = m_wasTried ? QString() : sessionBusAddress();
    if (std::exchange(m_wasTried, true) || address.isEmpty()) {
        return m_bus.isConnected();
    }
    m_bus = QDBusConnection::connectToBus(address, connectionName(this));
    if (!m_bus.isConnected()) {
        qCInfo(lcThumbnails, "no session bus: %s", qUtf8Printable(m_bus.lastError().message()));
        return false;
    }
    const auto follow = [this](const QString& signal, const char* slot) {
        return m_bus.connect(QString(), kPath, kService, signal, this, slot);
    };
    const bool isFollowed = follow(u"Ready"_s, SLOT(readyReported(QDBusMessage))) &&
                            follow(u"Error"_s, SLOT(errorReported(QDBusMessage))) &&
                            follow(u"Finished"_s, SLOT(finishReported(QDBusMessage)));
    if (!isFollowed) {
        qCWarning(lcThumbnails, "the thumbnailer's answers cannot be followed");
    }
    return isFollowed;
}

void FileThumbnailer::queue(quint64 ticket, const QString& path, int sidePx) {
    auto* deadline = new QTimer(this);
    deadline->setSingleShot(true);
    connect(deadline, &QTimer::timeout, this, [this, ticket] { finish(ticket); });
    deadline->start(m_options.deadline);
    m_jobs.insert(ticket, {path, sidePx, std::nullopt, deadline});
    const QString type = QMimeDatabase().mimeTypeForFile(path).name();
    const QString flavor = QLatin1StringView(thumbnailFlavorFor(sidePx).name);
    const QDBusMessage call =
        callOf(u"Queue"_s, {QStringList{QString::fromLatin1(ThumbnailCache::uriOf(path))},
                            QStringList{type}, flavor, kScheduler, uint(0)});
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, ticket] {
        queued(ticket, QDBusPendingReply<>(*watcher).reply());
        watcher->deleteLater();
    });
}

void FileThumbnailer::queued(quint64 ticket, const QDBusMessage& reply) {
    const bool isAccepted = reply.type() == QDBusMessage::ReplyMessage &&
                            reply.arguments().value(0).metaType() == QMetaType::fromType<uint>();
    const auto job = m_jobs.find(ticket);
    if (!isAccepted) {
        qCDebug(lcThumbnails, "no thumbnailer: %s", qUtf8Printable(reply.errorMessage()));
        finish(ticket);
    } else if (job == m_jobs.end()) {
        dequeue(reply.arguments().constFirst().toUInt());
    } else {
        job->handle = reply.arguments().constFirst().toUInt();
    }
}

QList<quint64> FileThumbnailer::ticketsOf(const QStringList& uris) const {
    QList<quint64> tickets;
    for (auto job = m_jobs.cbegin(); job != m_jobs.cend(); ++job) {
        if (uris.contains(QString::fromLatin1(ThumbnailCache::uriOf(job->path)))) {
            tickets.append(job.key());
        }
    }
    return tickets;
}

void FileThumbnailer::readyReported(const QDBusMessage& signal) {
    for (const quint64 ticket : ticketsOf(signal.arguments().value(1).toStringList())) {
        finish(ticket);
    }
}

void FileThumbnailer::errorReported(const QDBusMessage& signal) {
    for (const quint64 ticket : ticketsOf(signal.arguments().value(1).toStringList())) {
        finish(ticket);
    }
}

void FileThumbnailer::finishReported(const QDBusMessage& signal) {
    const uint handle = signal.arguments().value(0).toUInt();
    QList<quint64> tickets;
    for (auto job = m_jobs.cbegin(); job != m_jobs.cend(); ++job) {
        if (job->handle == handle) {
            tickets.append(job.key());
        }
    }
    for (const quint64 ticket : std::as_const(tickets)) {
        finish(ticket);
    }
}

std::optional<FileThumbnailer::Job> FileThumbnailer::take(quint64 ticket) {
    if (!m_jobs.contains(ticket)) {
        return std::nullopt;
    }
    Job job = m_jobs.take(ticket);
    job.deadline->deleteLater();
    return job;
}

void FileThumbnailer::finish(quint64 ticket) {
    const auto job = take(ticket);
    if (!job) {
        return;
    }
    auto image = m_cache.find(job->path, job->sidePx);
    if (!image) {
        image = m_cache.findSmaller(job->path, job->sidePx);
    }
    Q_EMIT finished(ticket, image.value_or(QImage()));
}

void FileThumbnailer::cancel(quint64 ticket) {
    const auto job = take(ticket);
    if (job && job->handle) {
        dequeue(*job->handle);
    }
}

void FileThumbnailer::dequeue(uint handle) {
    m_bus.send(callOf(u"Dequeue"_s, {handle}));
}

}  // namespace quillo
