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

/// A target with its reply, of the target's own type unless another is given.
[[nodiscard]] inline CopiedTarget given(const QByteArray& target, const QByteArray& bytes,
                                        const QByteArray& type = {}) {
    return {target, RawReply{type.isEmpty() ? target : type, bytes}};
}

[[nodiscard]] inline CopiedTarget refused(const QByteArray& target) {
    return {target, std::nullopt};
}

/// A plain UTF-8 text as most programs copy it.
[[nodiscard]] QList<CopiedTarget> copiedText(const QString& text);

/// A pasteboard that works, in memory. Changes are told on the thread that makes them.
class FakePasteboard final : public Pasteboard {
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

    // What other programs do, and what became of it. Thread-safe.

    /// Another program copies.
    void copyFrom(const QList<CopiedTarget>& targets);
    /// The owner clears the pasteboard.
    void clear();
    /// The owner quits; what was kept is offered in its place.
    void quitOwner();
    /// The owner says that it is about to quit.
    void announceQuit();
    /// From here on every fetch of the target waits until it is superseded or ended.
    void stall(const QByteArray& target);
    /// What a program that pastes gets for a target.
    [[nodiscard]] std::optional<RawReply> paste(const QByteArray& target);
    [[nodiscard]] QList<QByteArray> offeredTargets() const;
    [[nodiscard]] std::optional<QString> primary() const;
    /// How often a target was fetched, over all copies; "TARGETS" counts the lists.
    [[nodiscard]] int fetchCount(const QByteArray& target) const;
    [[nodiscard]] bool isReadStalled() const;
    /// What settle() last said of a change; none when it said nothing.
    [[nodiscard]] std::optional<bool> wasKept(qint64 changeCount) const;

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
