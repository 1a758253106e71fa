// SPDX-License-Identifier: MIT
#include "support/fake_pasteboard.h"

#include <algorithm>
#include <utility>

#include "support/plain_converters.h"

namespace quillo::testing {

namespace {

const PasteboardConverters& plainConverters() {
    static const PlainConverters plain;
    static const PasteboardConverters converters{plain, plain};
    return converters;
}

const PasteboardOffer* find(const PasteboardOffers& offers, const QByteArray& target) {
    const auto found = std::find_if(offers.cbegin(), offers.cend(),
                                    [&](const auto& offer) { return offer.target == target; });
    return found != offers.cend() ? &*found : nullptr;
}

}  // namespace

QList<CopiedTarget> copiedText(const QString& text) {
    return {{"UTF8_STRING", RawReply{"UTF8_STRING", text.toUtf8()}}};
}

struct FakePasteboard::State {
    mutable std::mutex mutex;
    std::condition_variable changed;
    qint64 count = 1;
    qint64 epoch = 0;
    qint64 supersededBelow = 1;
    PasteboardOffers offers;
    bool hasOwner = false;
    std::optional<QString> primary;
    QHash<QByteArray, int> fetches;
    QSet<QByteArray> stalled;
    int stalledReads = 0;
    QHash<qint64, std::optional<KeptContents>> settled;
    std::optional<qint64> quitCount;  ///< Whose program quit before its change was settled.
};

class FakePasteboard::Source final : public PasteboardSource {
public:
    explicit Source(std::shared_ptr<State> state) : m_state(std::move(state)) {
        const std::scoped_lock lock(m_state->mutex);
        m_count = m_state->count;
        m_epoch = m_state->epoch;
    }

    [[nodiscard]] qint64 changeCount() const override { return m_count; }

    [[nodiscard]] QList<QByteArray> targets() override {
        if (!m_targets) {
            std::unique_lock lock(m_state->mutex);
            m_targets.emplace();
            if (waitFor("TARGETS", lock)) {
                for (const PasteboardOffer& offer : m_state->offers) {
                    m_targets->append(offer.target);
                }
            }
        }
        return *m_targets;
    }

    [[nodiscard]] std::optional<RawReply> fetch(const QByteArray& target) override {
        std::unique_lock lock(m_state->mutex);
        if (!waitFor(target, lock)) {
            return std::nullopt;
        }
        const PasteboardOffer* const offer = find(m_state->offers, target);
        return offer != nullptr ? offer->reply->get() : std::nullopt;
    }

    [[nodiscard]] bool wasSuperseded() const override { return m_wasSuperseded; }

private:
    bool isPresent() const { return m_state->count == m_count && m_state->epoch == m_epoch; }

    /// False when the contents are not present any more.
    bool waitFor(const QByteArray& target, std::unique_lock<std::mutex>& lock) {
        if (isPresent()) {
            ++m_state->fetches[target];
            ++m_state->stalledReads;
            m_state->changed.wait(
                lock, [&] { return !isPresent() || !m_state->stalled.contains(target); });
            --m_state->stalledReads;
        }
        m_wasSuperseded |= m_count < m_state->supersededBelow;
        return isPresent();
    }

    std::shared_ptr<State> m_state;
    qint64 m_count = 0;
    qint64 m_epoch = 0;
    std::optional<QList<QByteArray>> m_targets;
    bool m_wasSuperseded = false;
};

FakePasteboard::FakePasteboard() : FakePasteboard(plainConverters()) {}

FakePasteboard::FakePasteboard(const PasteboardConverters& converters)
    : m_converters(converters), m_state(std::make_shared<State>()) {}

FakePasteboard::~FakePasteboard() {
    endReads();
}

qint64 FakePasteboard::changeCount() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->count;
}

std::unique_ptr<PasteboardSource> FakePasteboard::open() {
    return std::make_unique<Source>(m_state);
}

void FakePasteboard::write(PasteboardContents contents) {
    replace(offersFor(contents, m_converters));
}

void FakePasteboard::writePrimary(PasteboardContents contents) {
    const PasteboardOffers offers = offersForTextOf(contents, m_converters);
    const auto reply = offers.isEmpty() ? std::nullopt : offers.constFirst().reply->get();
    const std::scoped_lock lock(m_state->mutex);
    m_state->primary = reply ? std::optional(QString::fromUtf8(reply->bytes)) : std::nullopt;
}

void FakePasteboard::endReads() {
    const std::scoped_lock lock(m_state->mutex);
    ++m_state->epoch;
    m_state->changed.notify_all();
}

void FakePasteboard::settle(qint64 changeCount, std::optional<KeptContents> contents) {
    std::unique_lock lock(m_state->mutex);
    m_state->settled.insert(changeCount, contents);
    if (m_state->quitCount == changeCount && contents) {
        lock.unlock();
        replace(offersForKept(*contents, m_converters));
    }
}

void FakePasteboard::setListener(std::function<void(PasteboardChange)> listener) {
    const std::scoped_lock lock(m_listenerMutex);
    m_listener = std::move(listener);
}

void FakePasteboard::copyFrom(const QList<CopiedTarget>& targets) {
    PasteboardOffers offers;
    for (const CopiedTarget& target : targets) {
        offers.append({target.target, std::make_shared<const Lazy<std::optional<RawReply>>>(
                                          [reply = target.reply] { return reply; })});
    }
    replace(std::move(offers));
}

void FakePasteboard::clear() {
    replace({});
}

void FakePasteboard::quitOwner() {
    std::unique_lock lock(m_state->mutex);
    if (!m_state->hasOwner) {
        return;
    }
    const qint64 count = m_state->count;
    const bool isSettled = m_state->settled.contains(count);
    if (const auto kept = m_state->settled.value(count)) {
        lock.unlock();
        replace(offersForKept(*kept, m_converters));
        return;
    }
    ++m_state->count;
    m_state->offers.clear();
    m_state->hasOwner = false;
    m_state->quitCount = isSettled ? std::nullopt : std::optional(count);
    m_state->changed.notify_all();
    lock.unlock();
    tell(PasteboardChange::Changed);
}

void FakePasteboard::announceQuit() {
    tell(PasteboardChange::LeavingSoon);
}

void FakePasteboard::stall(const QByteArray& target) {
    const std::scoped_lock lock(m_state->mutex);
    m_state->stalled.insert(target);
}

std::optional<RawReply> FakePasteboard::paste(const QByteArray& target) {
    const std::scoped_lock lock(m_state->mutex);
    const PasteboardOffer* const offer = find(m_state->offers, target);
    return offer != nullptr ? offer->reply->get() : std::nullopt;
}

QList<QByteArray> FakePasteboard::offeredTargets() const {
    const std::scoped_lock lock(m_state->mutex);
    QList<QByteArray> targets;
    for (const PasteboardOffer& offer : m_state->offers) {
        targets.append(offer.target);
    }
    return targets;
}

std::optional<QString> FakePasteboard::primary() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->primary;
}

int FakePasteboard::fetchCount(const QByteArray& target) const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->fetches.value(target);
}

bool FakePasteboard::isReadStalled() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->stalledReads > 0;
}

std::optional<bool> FakePasteboard::wasKept(qint64 changeCount) const {
    const std::scoped_lock lock(m_state->mutex);
    const auto found = m_state->settled.constFind(changeCount);
    return found != m_state->settled.cend() ? std::optional(found->has_value()) : std::nullopt;
}

void FakePasteboard::replace(PasteboardOffers offers) {
    {
        const std::scoped_lock lock(m_state->mutex);
        ++m_state->count;
        m_state->supersededBelow = m_state->count;
        m_state->hasOwner = !offers.isEmpty();
        m_state->offers = std::move(offers);
        m_state->quitCount.reset();
        m_state->changed.notify_all();
    }
    tell(PasteboardChange::Changed);
}

void FakePasteboard::tell(PasteboardChange change) {
    const std::scoped_lock lock(m_listenerMutex);
    if (m_listener) {
        m_listener(change);
    }
}

}  // namespace quillo::testing
