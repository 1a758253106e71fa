// SPDX-License-Identifier: MIT
#include "platform/freedesktop/json_user_defaults.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <mutex>
#include <utility>

#include "base/logging.h"

namespace quillo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QUILLO_LOG_CATEGORY(lcUserDefaults, "UserDefaults")

// A slider that is dragged writes at each step; each write waits for the disk.
constexpr auto kShortestWriteInterval = 250ms;
// Editors write a file in several steps.
constexpr auto kReloadDelay = 100ms;
constexpr std::chrono::milliseconds kFirstRetryInterval = 1s;
constexpr std::chrono::milliseconds kLongestRetryInterval = 60s;

QSet<QString> differingKeys(const QJsonObject& before, const QJsonObject& after) {
    QSet<QString> result;
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (after.value(it.key()) != it.value()) {
            result.insert(it.key());
        }
    }
    for (auto it = after.begin(); it != after.end(); ++it) {
        if (!before.contains(it.key())) {
            result.insert(it.key());
        }
    }
    return result;
}

// A JSON object keeps the bytes of every text that was ever replaced in it; a new one has none.
QJsonObject copiedAnew(const QJsonObject& object) {
    QJsonObject copy;
    for (auto it = object.begin(); it != object.end(); ++it) {
        copy.insert(it.key(), it.value());
    }
    return copy;
}

void assign(QJsonObject& object, const QString& key, const QJsonValue& value) {
    if (value.isUndefined()) {
        object.remove(key);
    } else {
        object.insert(key, value);
    }
}

}  // namespace

/// One state of the settings on its way into the file. The worker's while it runs.
struct JsonUserDefaults::Write {
    QString path;
    QJsonObject values;
    QSet<QString> keys;  ///< Those that were changed since the last write.
    bool isFileForeign;
    SettingsFileState state;  ///< Of the file that the values come from.
    QString aside;            ///< Where the foreign file went.
    Result<void> outcome;

    void run() {
        if (isFileForeign) {
            Result<QString> moved = setFileAside(path);
            if (!moved) {
                outcome = std::unexpected(moved.error());
                return;
            }
            aside = std::move(*moved);
            state = {};
        }
        outcome = writeSettingsFile(path, values, state);
    }
};

JsonUserDefaults::JsonUserDefaults(const QString& path, QObject* parent)
    : UserDefaults(parent), m_path(path) {
    m_writeTimer.setSingleShot(true);
    m_reloadTimer.setSingleShot(true);
    m_worker.setMaxThreadCount(1);
    m_worker.setExpiryTimeout(1'000);
    connect(&m_writeTimer, &QTimer::timeout, this, &JsonUserDefaults::beginWrite);
    connect(&m_reloadTimer, &QTimer::timeout, this, [this] {
        if (m_write != nullptr) {
            scheduleReload();  // The file may be between two states of ours.
            return;
        }
        mergeFromFile();
        watch();
    });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &JsonUserDefaults::scheduleReload);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this,
            &JsonUserDefaults::scheduleReload);
    if (!makeFolderOf(m_path)) {
        qCWarning(lcUserDefaults) << "the settings folder cannot be created";
    }
    // Watched before it is read, so that no edit falls between the two.
    watch();
    mergeFromFile();
}

JsonUserDefaults::~JsonUserDefaults() {
    static_cast<void>(flush());
}

QString JsonUserDefaults::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/Quillo/settings.json"_s;
}

std::optional<QJsonValue> JsonUserDefaults::object(const QString& key) const {
    const std::shared_lock lock(m_mutex);
    const auto found = m_values.constFind(key);
    return found == m_values.constEnd() ? std::nullopt : std::optional(found.value());
}

void JsonUserDefaults::setObject(const QString& key, const QJsonValue& value) {
    if (value.isDouble() && !std::isfinite(value.toDouble())) {
        qCWarning(lcUserDefaults) << "no number to store under" << key;
        return;
    }
    setValue(key, value);
}

void JsonUserDefaults::remove(const QString& key) {
    setValue(key, QJsonValue(QJsonValue::Undefined));
}

void JsonUserDefaults::setValue(const QString& key, const QJsonValue& value) {
    if (m_values.value(key) == value) {
        return;
    }
    {
        const std::unique_lock lock(m_mutex);
        assign(m_values, key, value);
    }
    m_dirty.insert(key);
    scheduleWrite();
    Q_EMIT changed(key);
}

void JsonUserDefaults::scheduleWrite() {
    if (m_write != nullptr || (m_writeTimer.isActive() && !m_hasFailed)) {
        return;
    }
    const auto elapsed = m_sinceWrite.isValid() ? std::chrono::milliseconds(m_sinceWrite.elapsed())
                                                : kShortestWriteInterval;
    m_writeTimer.start(std::max(0ms, kShortestWriteInterval - elapsed));
}

void JsonUserDefaults::scheduleReload() {
    m_reloadTimer.start(kReloadDelay);
}

void JsonUserDefaults::watch() {
    const QFileInfo link(m_path);
    QStringList wanted{link.absolutePath()};
    if (link.exists()) {
        const QFileInfo target(link.canonicalFilePath());
        wanted << target.absolutePath() << target.absoluteFilePath();
    }
    wanted.removeDuplicates();
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    wanted.removeIf([&watched](const QString& path) {
        return watched.contains(path) || !QFileInfo::exists(path);
    });
    if (!wanted.isEmpty()) {
        m_watcher.addPaths(wanted);
    }
}

void JsonUserDefaults::mergeFromFile() {
    m_stateInFile = settingsFileState(m_path);
    const Result<QJsonObject> read = readSettingsFile(m_path, kLargestFileBytes);
    if (!read) {
        if (!m_fileIsForeign) {
            qCCritical(lcUserDefaults).noquote() << read.error().text + u"; it is left alone"_s;
        }
        m_fileIsForeign = true;
        return;
    }
    m_fileIsForeign = false;
    QSet<QString> edited = differingKeys(m_inFile, *read);
    edited.subtract(m_dirty);
    m_inFile = *read;
    {
        const std::unique_lock lock(m_mutex);
        edited.removeIf(
            [this](const QString& key) { return m_values.value(key) == m_inFile.value(key); });
        for (const QString& key : std::as_const(edited)) {
            assign(m_values, key, m_inFile.value(key));
        }
    }
    // In one order whatever the hash, so that what several keys of an edit do together is certain.
    QStringList sorted = edited.values();
    sorted.sort();
    for (const QString& key : std::as_const(sorted)) {
        Q_EMIT changed(key);
    }
}

Result<void> JsonUserDefaults::flush() {
    m_worker.waitForDone();
    if (m_write != nullptr) {
        static_cast<void>(endWrite());
    }
    constexpr int kMostTries = 5;
    Result<void> written;
    for (int tries = 0; tries < kMostTries; ++tries) {
        beginWrite();
        m_worker.waitForDone();
        written = m_write != nullptr ? endWrite() : Result<void>();
        if (written || written.error().kind != ErrorKind::Busy) {
            break;
        }
    }
    return written;
}

// At most one is under way; its end begins the next one.
void JsonUserDefaults::beginWrite() {
    m_writeTimer.stop();
    if (m_dirty.isEmpty() || m_write != nullptr) {
        return;
    }
    mergeFromFile();
    {
        const std::unique_lock lock(m_mutex);
        m_values = copiedAnew(m_values);
    }
    m_write = std::make_shared<Write>(Write{
        m_path, m_values, std::exchange(m_dirty, {}), m_fileIsForeign, m_stateInFile, {}, {}});
    m_worker.start([this, write = m_write] {
        write->run();
        QMetaObject::invokeMethod(
            this,
            [this, write] {
                if (write == m_write) {
                    static_cast<void>(endWrite());
                }
            },
            Qt::QueuedConnection);
    });
}

Result<void> JsonUserDefaults::endWrite() {
    const std::shared_ptr<Write> ended = std::exchange(m_write, nullptr);
    if (!ended->aside.isEmpty()) {
        qCWarning(lcUserDefaults) << "the settings file was put aside as" << ended->aside;
        m_fileIsForeign = false;
        m_inFile = {};
        m_stateInFile = {};
    }
    if (!ended->outcome) {
        m_dirty.unite(ended->keys);
        if (ended->outcome.error().kind == ErrorKind::Busy) {
            // Edited between our reading and writing: the next write begins with that edit.
            m_writeTimer.start(0);
            return ended->outcome;
        }
        if (!m_hasFailed) {
            qCCritical(lcUserDefaults).noquote() << ended->outcome.error().text;
        }
        tryAgainLater();
        return ended->outcome;
    }
    if (std::exchange(m_hasFailed, false)) {
        qCInfo(lcUserDefaults, "the settings can be written again");
    }
    m_inFile = ended->values;
    m_sinceWrite.start();
    watch();
    if (!m_dirty.isEmpty()) {
        scheduleWrite();
    }
    return {};
}

void JsonUserDefaults::tryAgainLater() {
    m_retryInterval =
        m_hasFailed ? std::min(m_retryInterval * 2, kLongestRetryInterval) : kFirstRetryInterval;
    m_hasFailed = true;
    m_writeTimer.start(m_retryInterval);
}

}  // namespace quillo
