// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <future>
#include <memory>
#include <optional>

#include "platform/x11/pasteboard/x11_pasteboard.h"
#include "support/fake_pasteboard.h"

namespace quillo::testing {

/// A pasteboard together with the other programs of its desktop.
class PasteboardRig {
public:
    virtual ~PasteboardRig() = default;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    /// Another program copies; returns when the change is seen.
    virtual void copy(const QList<CopiedTarget>& targets) = 0;
    virtual void clear() = 0;
    virtual void quit() = 0;
    /// What another program gets that pastes.
    [[nodiscard]] virtual std::optional<RawReply> paste(const QByteArray& target) = 0;
    [[nodiscard]] virtual QList<QByteArray> offered() = 0;
    [[nodiscard]] virtual std::optional<QByteArray> primary() = 0;
};

class FakePasteboardRig final : public PasteboardRig {
public:
    [[nodiscard]] Pasteboard& pasteboard() override { return m_pasteboard; }
    void copy(const QList<CopiedTarget>& targets) override { m_pasteboard.copyFrom(targets); }
    void clear() override { m_pasteboard.clear(); }
    void quit() override { m_pasteboard.quitOwner(); }
    [[nodiscard]] std::optional<RawReply> paste(const QByteArray& target) override {
        return m_pasteboard.paste(target);
    }
    [[nodiscard]] QList<QByteArray> offered() override { return m_pasteboard.offeredTargets(); }
    [[nodiscard]] std::optional<QByteArray> primary() override;

private:
    FakePasteboard m_pasteboard;
};

/// A program of tests/tools that runs beside the test.
class Tool final {
public:
    Tool(const QString& name, const QStringList& arguments);
    ~Tool();
    /// The next line of its output; empty when it says nothing within ten seconds.
    [[nodiscard]] QByteArray line();
    void signal(int number);
    void kill();
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }

private:
    QProcess m_process;
};

/// Runs a program to its end; none when it fails.
[[nodiscard]] std::optional<QByteArray> runTool(const QString& name, const QStringList& arguments,
                                                const QByteArray& input = {});

/// The real pasteboard on the display of the test.
class X11PasteboardRig final : public PasteboardRig {
public:
    explicit X11PasteboardRig(const x11::PasteboardLimits& limits = {});
    ~X11PasteboardRig() override;

    [[nodiscard]] Pasteboard& pasteboard() override { return *m_pasteboard; }
    void copy(const QList<CopiedTarget>& targets) override;
    void clear() override;
    void quit() override;
    [[nodiscard]] std::optional<RawReply> paste(const QByteArray& target) override;
    [[nodiscard]] QList<QByteArray> offered() override;
    [[nodiscard]] std::optional<QByteArray> primary() override;

    /// Another program copies with options of replay_owner; returns when the change is seen.
    Tool& copyWith(const QStringList& options);
    [[nodiscard]] Tool& owner() { return *m_owner; }
    /// Writes bytes into a file of the rig's folder and gives its path.
    [[nodiscard]] QString file(const QString& name, const QByteArray& bytes);
    [[nodiscard]] QByteArrayList log() const;
    void endPasteboard() { m_pasteboard.reset(); }
    /// Waits for the count to move beyond the given one.
    [[nodiscard]] bool waitForChangeAfter(qint64 count);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<x11::X11Pasteboard> m_pasteboard;
    std::unique_ptr<Tool> m_owner;
    int m_files = 0;
    bool m_hasCleared = false;
};

/// Waits until another program finds the reply under the target.
[[nodiscard]] bool waitUntilPasted(PasteboardRig& rig, const QByteArray& target,
                                   const QByteArray& bytes);

[[nodiscard]] QByteArray patternOf(qsizetype size);

}  // namespace quillo::testing
