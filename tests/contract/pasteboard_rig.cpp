// SPDX-License-Identifier: MIT
#include "contract/pasteboard_rig.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <csignal>

#include "support/plain_converters.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {

namespace {

QString toolPath(const QString& name) {
    const QString ours = QString::fromUtf8(QUILLO_TEST_TOOLS) + u'/' + name;
    return QFile::exists(ours) ? ours : name;
}

const PasteboardConverters& converters() {
    static const PlainConverters plain;
    static const PasteboardConverters both{plain, plain};
    return both;
}

}  // namespace

std::optional<QByteArray> FakePasteboardRig::primary() {
    const auto text = m_pasteboard.primary();
    return text ? std::optional(text->toUtf8()) : std::nullopt;
}

Tool::Tool(const QString& name, const QStringList& arguments) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(toolPath(name), arguments);
    m_process.waitForStarted();
}

Tool::~Tool() {
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QByteArray Tool::line() {
    QElapsedTimer timer;
    timer.start();
    while (!m_process.canReadLine() && timer.elapsed() < 10'000) {
        m_process.waitForReadyRead(100);
    }
    return m_process.readLine().trimmed();
}

void Tool::signal(int number) {
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

void Tool::kill() {
    m_process.kill();
    m_process.waitForFinished();
}

std::optional<QByteArray> runTool(const QString& name, const QStringList& arguments,
                                  const QByteArray& input) {
    QProcess process;
    process.start(toolPath(name), arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool hasEnded = process.waitForFinished(20'000);
    return hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0
               ? std::optional(process.readAllStandardOutput())
               : std::nullopt;
}

X11PasteboardRig::X11PasteboardRig(const x11::PasteboardLimits& limits) {
    auto made = x11::X11Pasteboard::create(converters(), {{}, limits, {}});
    if (!made) {
        ADD_FAILURE() << qPrintable(made.error().text);
        std::abort();
    }
    m_pasteboard = std::move(*made);
}

X11PasteboardRig::~X11PasteboardRig() = default;

void X11PasteboardRig::copy(const QList<CopiedTarget>& targets) {
    QStringList options;
    for (const auto& [target, reply] : targets) {
        if (reply) {
            const QString path = file(QString::number(m_files++), reply->bytes);
            options << u"--target"_s << QString::fromUtf8(target + ':' + reply->type) + u':' + path;
        } else {
            options << u"--refuse"_s << QString::fromUtf8(target);
        }
    }
    copyWith(options);
}

Tool& X11PasteboardRig::copyWith(const QStringList& options) {
    const qint64 count = m_pasteboard->changeCount();
    const QStringList logging{u"--log"_s, m_folder.filePath(u"log"_s)};
    auto next = std::make_unique<Tool>(u"replay_owner"_s, logging + options);
    EXPECT_EQ(next->line(), "ready");
    m_owner = std::move(next);
    m_hasCleared = false;
    EXPECT_TRUE(waitForChangeAfter(count));
    return *m_owner;
}

void X11PasteboardRig::clear() {
    const qint64 count = m_pasteboard->changeCount();
    m_owner->signal(SIGUSR1);
    m_hasCleared = true;
    EXPECT_TRUE(waitForChangeAfter(count));
}

void X11PasteboardRig::quit() {
    const qint64 count = m_pasteboard->changeCount();
    m_owner->kill();
    EXPECT_TRUE(m_hasCleared || waitForChangeAfter(count));
}

std::optional<RawReply> X11PasteboardRig::paste(const QByteArray& target) {
    const auto output = runTool(u"read_selection"_s, {u"--type"_s, QString::fromUtf8(target)});
    if (!output) {
        return std::nullopt;
    }
    const qsizetype end = output->indexOf('\n');
    return RawReply{output->left(end), output->mid(end + 1)};
}

QList<QByteArray> X11PasteboardRig::offered() {
    const auto lines = runTool(u"read_selection"_s, {u"TARGETS"_s});
    QList<QByteArray> targets = lines ? lines->trimmed().split('\n') : QList<QByteArray>{};
    targets.removeIf([](const QByteArray& target) {
        return target == "TARGETS" || target == "MULTIPLE" || target == "TIMESTAMP";
    });
    return targets;
}

std::optional<QByteArray> X11PasteboardRig::primary() {
    return runTool(u"read_selection"_s, {u"--primary"_s, u"UTF8_STRING"_s});
}

QString X11PasteboardRig::file(const QString& name, const QByteArray& bytes) {
    QFile file(m_folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
}

QByteArrayList X11PasteboardRig::log() const {
    QFile file(m_folder.filePath(u"log"_s));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().split('\n') : QByteArrayList{};
}

bool X11PasteboardRig::waitForChangeAfter(qint64 count) {
    return waitUntil([&] { return m_pasteboard->changeCount() > count; });
}

bool waitUntilPasted(PasteboardRig& rig, const QByteArray& target, const QByteArray& bytes) {
    return waitUntil([&] {
        const auto reply = rig.paste(target);
        return reply && reply->bytes == bytes;
    });
}

QByteArray patternOf(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    std::uint32_t value = 1;
    for (char& byte : bytes) {
        value = value * 1664525 + 1013904223;
        byte = static_cast<char>(value >> 24);
    }
    return bytes;
}

}  // namespace quillo::testing
