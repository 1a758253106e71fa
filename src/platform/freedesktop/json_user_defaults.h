// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QJsonObject>
#include <QSet>
#include <QThreadPool>
#include <QTimer>
#include <chrono>
#include <memory>
#include <shared_mutex>

#include "base/result.h"
#include "platform/freedesktop/settings_file.h"
#include "platform/user_defaults.h"

namespace quillo {

/// Settings in one JSON object (RFC 8259) in one file, written atomically and watched for edits
/// by hand. Keys that nobody here knows are kept. A file that cannot be understood (no JSON, too
/// large, not readable) reads as if nothing were set, and is put aside under a dated name before
/// the first write replaces it; once running, the values read last stay in force until the file
/// can be understood again.
class JsonUserDefaults final : public UserDefaults {
    Q_OBJECT

public:
    static constexpr qint64 kLargestFileBytes = 1024 * 1024;

    explicit JsonUserDefaults(const QString& path = defaultPath(), QObject* parent = nullptr);
    /// Writes what is still waiting.
    ~JsonUserDefaults() override;

    /// Quillo/settings.json under the XDG config home.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] std::optional<QJsonValue> object(const QString& key) const override;
    /// The file is written by a worker, begun at the end of the turn of the event loop and not more
    /// often than four times a second. A write that fails is said once in the log and tried again,
    /// at intervals that double up to a minute; the values hold meanwhile. An undefined value
    /// removes the key; a number that JSON cannot hold (NaN, infinity) is refused with a line in
    /// the log.
    void setObject(const QString& key, const QJsonValue& value) override;
    void remove(const QString& key) override;

    /// Writes what is waiting, merged with what was edited in the file since it was read, and
    /// waits for it. For the end of the program and tests.
    Result<void> flush();

private:
    void setValue(const QString& key, const QJsonValue& value);
    void scheduleWrite();
    void scheduleReload();
    void watch();
    /// Takes over from the file what differs from its last known state; a key that waits to be
    /// written keeps its newer value here.
    void mergeFromFile();
    struct Write;
    void beginWrite();
    /// Takes in how the write that was begun went; it must have ended.
    Result<void> endWrite();
    void tryAgainLater();

    const QString m_path;
    mutable std::shared_mutex m_mutex;
    QJsonObject m_values;             ///< What readers see; guarded by m_mutex.
    QJsonObject m_inFile;             ///< What the file held when it was last read or written.
    SettingsFileState m_stateInFile;  ///< When it was last read.
    QSet<QString> m_dirty;            ///< Keys that wait to be written.
    bool m_fileIsForeign = false;     ///< It exists, but was not understood.
    bool m_hasFailed = false;         ///< The latest write did.
    std::chrono::milliseconds m_retryInterval{};
    std::shared_ptr<Write> m_write;  ///< The one under way.
    QElapsedTimer m_sinceWrite;
    QTimer m_writeTimer;
    QTimer m_reloadTimer;
    QFileSystemWatcher m_watcher;
    QThreadPool m_worker;  ///< One thread, so that writes keep their order.
};

}  // namespace quillo
