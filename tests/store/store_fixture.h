// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QStringList>
#include <QTemporaryDir>
#include <utility>

#include "model/clip.h"
#include "model/persistence_controller.h"
#include "model/store/sqlite_database.h"
#include "support/manual_clock.h"
#include "support/wait_until.h"

namespace quillo::testing {

/// Collects the program's log lines while it lives, each with its category's last part.
class LogCapture final {
public:
    LogCapture() { s_previous = qInstallMessageHandler(&LogCapture::take); }
    ~LogCapture() { qInstallMessageHandler(s_previous); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    static QStringList lines() {
        const QMutexLocker lock(&s_mutex);
        return s_lines;
    }
    static void clear() {
        const QMutexLocker lock(&s_mutex);
        s_lines.clear();
    }

private:
    static void take(QtMsgType, const QMessageLogContext& context, const QString& text) {
        const QMutexLocker lock(&s_mutex);
        s_lines +=
            QString::fromLatin1(context.category).section(u'.', -1) + QStringLiteral(": ") + text;
    }

    static inline QtMessageHandler s_previous = nullptr;
    static inline QMutex s_mutex;
    static inline QStringList s_lines;
};

constexpr int at(ClipAttribute attribute) {
    return std::to_underlying(attribute);
}

/// A store in a folder of its own, with a clock that is moved by hand.
class StoreTest : public ::testing::Test {
protected:
    void SetUp() override { LogCapture::clear(); }

    [[nodiscard]] PersistenceController::Options options() const {
        PersistenceController::Options result;
        result.baseFolder = folder.path();
        result.clock = &clock;
        result.retryInterval = std::chrono::milliseconds(5);
        return result;
    }
    [[nodiscard]] QString folderPath() const { return folder.filePath(QStringLiteral("Quillo")); }
    [[nodiscard]] QString filePath() const {
        return folderPath() + QStringLiteral("/Quillo.sqlite");
    }
    void open() { controller = std::make_unique<PersistenceController>(options()); }
    void close() { controller.reset(); }

    /// Runs work on the store's thread and waits for it and for the merge into the view.
    void onStore(std::function<void(ObjectContext&)> work) {
        controller->perform([&work](ObjectContext& context) { work(context); });
        controller->waitUntilIdle();
        QCoreApplication::processEvents();
    }
    /// Stores a text clip from the background and gives its key.
    QUuid addText(const QString& text) {
        QUuid key;
        onStore([&](ObjectContext& context) {
            const auto clip = Clip::create(context, clock.now());
            clip->setPlaintext(text);
            EXPECT_TRUE(context.save());
            key = clip->id();
        });
        clock.advance(std::chrono::seconds(1));
        return key;
    }
    [[nodiscard]] QStringList texts(ObjectContext& context,
                                    Qt::SortOrder order = Qt::DescendingOrder) {
        FetchRequest request;
        request.sort = {{at(ClipAttribute::CreatedAt), order}};
        QStringList result;
        const auto clips = context.fetch<Clip>(request).value();
        for (const auto& clip : clips) {
            result += clip->plaintext().value_or(QStringLiteral("-"));
        }
        return result;
    }
    /// What the store's files hold, byte for byte.
    [[nodiscard]] QByteArray fileBytes() const {
        QByteArray bytes;
        for (const char* suffix : {"", "-wal"}) {
            QFile file(filePath() + QLatin1StringView(suffix));
            if (file.open(QIODevice::ReadOnly)) {
                bytes += file.readAll();
            }
        }
        return bytes;
    }
    void writeFile(const QByteArray& bytes) {
        QDir().mkpath(folderPath());
        QFile file(filePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir folder;
    ManualClock clock;
    LogCapture log;
    std::unique_ptr<PersistenceController> controller;
};

}  // namespace quillo::testing
