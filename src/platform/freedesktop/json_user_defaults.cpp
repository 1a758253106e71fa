// SPDX-License-Identifier: MIT
#include "platform/freedesktop/json_user_defaults.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <mutex>

#include "base/logging.h"
#include "platform/freedesktop/settings_file.h"

namespace quillo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QUILLO_LOG_CATEGORY(lcUserDefaults, "UserDefaults")

// A slider that is dragged writes at each step; each write waits for the disk.
constexpr auto kShortestWriteInterval = 250ms;
// Editors write a file in several steps.
constexpr auto kReloadDelay = 100ms;

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

void assign(QJsonObject& object, const QString& key, const QJsonValue& value) {
    if (value.isUndefined()) {
        object.remove(key);
    } else {
        object.insert(key, value);
    }
}

}  // namespace

JsonUserDefaults::JsonUserDefaults(const QString& path, QObject* parent)
    : UserDefaults(parent), m_path(path) {
    m_writeTimer.setSingleShot(true);
    m_reloadTimer.setSingleShot(true);
    connect(&m_writeTimer, &QTimer::timeout, this, [this] { static_cast<void>(flush()); });
    connect(&m_reloadTimer, &QTimer::timeout, this, [this] {
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
    if (m_writeTimer.isActive()) {
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
    for (const QString& key : std::as_const(edited)) {
        Q_EMIT changed(key);
    }
}

Result<void> JsonUserDefaults::flush() {
    m_writeTimer.stop();
    if (m_dirty.isEmpty()) {
        return {};
    }
    mergeFromFile();
    const Result<void> written = writeFile();
    if (!written) {
        // Nothing is lost while the program runs; the next write tries again.
        qCCritical(lcUserDefaults).noquote() << written.error().text;
        return written;
    }
    m_sinceWrite.start();
    m_dirty.clear();
    watch();
    return {};
}

Result<void> JsonUserDefaults::writeFile() {
    if (m_fileIsForeign) {
        const Result<QString> aside = setFileAside(m_path);
        if (!aside) {
            return std::unexpected(aside.error());
        }
        qCWarning(lcUserDefaults) << "the settings file was put aside as" << *aside;
        m_fileIsForeign = false;
        m_inFile = {};
    }
    const Result<void> written = writeSettingsFile(m_path, m_values);
    if (written) {
        m_inFile = m_values;
    }
    return written;
}

}  // namespace quillo
