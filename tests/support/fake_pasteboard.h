// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/pasteboard.h"
#include "platform/pasteboard_formats.h"

namespace quillo::testing {

/// One target of a copy that a test makes: with its reply, or refused when there is none.
struct CopiedTarget {
    QByteArray target;
    std::optional<RawReply> reply;
};

/// A plain UTF-8 text as most programs copy it.
[[nodiscard]] QList<CopiedTarget> copiedText(const QString& text);

/// What other programs do to a fake pasteboard, and what became of it. Thread-safe.
class PasteboardSteering {
public:
    virtual ~PasteboardSteering() = default;

    /// Another program copies.
    virtual void copyFrom(QList<CopiedTarget> targets) = 0;
    /// The owner clears the pasteboard.
    virtual void clear() = 0;
    /// The owner quits; what was kept is offered in its place.
    virtual void quitOwner() = 0;
    /// The owner says that it is about to quit.
    virtual void announceQuit() = 0;
    /// From here on every fetch of the target waits until it is released, superseded or ended.
    virtual void stall(const QByteArray& target) = 0;
    virtual void release(const QByteArray& target) = 0;

    /// What a program that pastes gets for a target.
    [[nodiscard]] virtual std::optional<RawReply> paste(const QByteArray& target) = 0;
    [[nodiscard]] virtual QList<QByteArray> offeredTargets() const = 0;
    [[nodiscard]] virtual std::optional<QString> primary() const = 0;
    /// How often a target was fetched, over all copies; "TARGETS" counts the lists.
    [[nodiscard]] virtual int fetchCount(const QByteArray& target) const = 0;
    [[nodiscard]] virtual bool isReadStalled() const = 0;
    /// What settle() last said of a change; none when it said nothing.
    [[nodiscard]] virtual std::optional<bool> wasKept(qint64 changeCount) const = 0;
};

/// A pasteboard that works, in memory. Changes are told on the thread that makes them.
class FakePasteboard final : public Pasteboard, public PasteboardSteering {
public:
    /// Converts nothing: RTF and HTML are given as they are, an image under its own type when
    /// its leading bytes say one.
    FakePasteboard();
    explicit FakePasteboard(const PasteboardConverters& converters);
    ~FakePasteboard() override;

    [[nodiscard]] qint64 changeCount() const override;
    [[nodiscard]] std::unique_ptr<PasteboardSource> open() override;
    void write(PasteboardContents contents) override;
    void writePrimary(PasteboardContents contents) override;
    void endReads() override;
    void settle(qint64 changeCount, std::optional<KeptContents> contents) override;
    void setListener(std::function<void(PasteboardChange)> listener) override;

    void copyFrom(QList<CopiedTarget> targets) override;
    void clear() override;
    void quitOwner() override;
    void announceQuit() override;
    void stall(const QByteArray& target) override;
    void release(const QByteArray& target) override;
    [[nodiscard]] std::optional<RawReply> paste(const QByteArray& target) override;
    [[nodiscard]] QList<QByteArray> offeredTargets() const override;
    [[nodiscard]] std::optional<QString> primary() const override;
    [[nodiscard]] int fetchCount(const QByteArray& target) const override;
    [[nodiscard]] bool isReadStalled() const override;
    [[nodiscard]] std::optional<bool> wasKept(qint64 changeCount) const override;

private:
    class Source;
    struct State;

    void replace(PasteboardOffers offers);
    void tell(PasteboardChange change);

    const PasteboardConverters m_converters;
    std::shared_ptr<State> m_state;
    mutable std::mutex m_listenerMutex;
    std::function<void(PasteboardChange)> m_listener;
};

}  // namespace quillo::testing
