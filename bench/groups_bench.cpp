// SPDX-License-Identifier: MIT
// What a person waits for in a large group and behind a filter chip. usage: bench_groups
// [--benchmark_filter=...]
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include "base/clock.h"
#include "model/clip.h"
#include "model/filter_type.h"
#include "model/groups.h"
#include "model/persistence_controller.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kClips = 200'000;
constexpr int kMembers = 10'000;

/// A history in which every twentieth clip is a member of one group and every tenth an image; the
/// group's order names all members. The clock moves by a second with each reading.
class History final {
public:
    static History& shared() {
        static History history;
        return history;
    }

    ObjectContext& view() { return m_controller->viewContext(); }
    Pinboard& group() { return *m_group; }
    [[nodiscard]] QUuid memberAt(qsizetype position) const { return m_members[position]; }
    [[nodiscard]] const QList<QUuid>& members() const { return m_members; }

private:
    class SteppingClock final : public Clock {
    public:
        [[nodiscard]] Timestamp now() const override {
            m_now += std::chrono::seconds(1);
            return m_now;
        }

    private:
        mutable Timestamp m_now{std::chrono::seconds(1'700'000'000)};
    };

    History() {
        PersistenceController::Options options;
        options.baseFolder = m_folder.path();
        options.clock = &m_clock;
        m_controller = std::make_unique<PersistenceController>(options);
        m_controller->perform([this](ObjectContext& context) { fill(context); });
        m_controller->waitUntilIdle();
        m_group = groupsInOrder(view()).value().first();
        (void)m_group->normalizeOrder();
        (void)view().save();
        m_members = m_group->clipIds().value();
    }

    void fill(ObjectContext& context) {
        const auto group = createGroup(context, {u"large"_s, Qt::red, {}, {}}).value();
        for (int i = 0; i < kClips; ++i) {
            const auto clip = Clip::create(context, m_clock.now());
            clip->setType(i % 10 == 0 ? ClipType::Image : ClipType::Text);
            clip->setPinned(i % 1000 == 0);
            clip->setPlaintext(u"Some words of a clip, number %1. "_s.arg(i).repeated(6));
            if (i % (kClips / kMembers) == 0) {
                context.relate(clip->objectId(), Relationship::ClipPinboards, group->objectId());
            }
            if (i % 1000 == 999) {
                (void)context.save();
            }
        }
        (void)context.save();
    }

    QTemporaryDir m_folder;
    SteppingClock m_clock;
    std::unique_ptr<PersistenceController> m_controller;
    std::shared_ptr<Pinboard> m_group;
    QList<QUuid> m_members;
};

void membersNewestFirst(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.group().clipIds());
    }
}
BENCHMARK(membersNewestFirst)->Unit(benchmark::kMillisecond);

void membersInOrder(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.group().orderedClipIds());
    }
}
BENCHMARK(membersInOrder)->Unit(benchmark::kMillisecond);

void countMembers(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        benchmark::DoNotOptimize(memberCount(history.group()));
    }
}
BENCHMARK(countMembers)->Unit(benchmark::kMillisecond);

void decodeOrder(benchmark::State& state) {
    History& history = History::shared();
    const QByteArray document = history.group().clipOrder().value();
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeClipOrder(document));
    }
}
BENCHMARK(decodeOrder)->Unit(benchmark::kMillisecond);

void encodeOrder(benchmark::State& state) {
    History& history = History::shared();
    const ClipOrderEntries order = history.group().clipOrderEntries();
    for (auto _ : state) {
        benchmark::DoNotOptimize(encodeClipOrder(order));
    }
}
BENCHMARK(encodeOrder)->Unit(benchmark::kMillisecond);

void togglePin(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        history.group().togglePin(history.memberAt(kMembers / 2));
    }
    history.view().rollback();
}
BENCHMARK(togglePin)->Unit(benchmark::kMillisecond);

void normalize(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.group().normalizeOrder());
    }
    history.view().rollback();
}
BENCHMARK(normalize)->Unit(benchmark::kMillisecond);

void moveInShownList(benchmark::State& state) {
    History& history = History::shared();
    QList<QUuid> visible;
    for (qsizetype i = 0; i < kMembers; i += 2) {
        visible.append(history.memberAt(i));
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.group().moveVisible(visible, {4000, 10}));
    }
    history.view().rollback();
}
BENCHMARK(moveInShownList)->Unit(benchmark::kMillisecond);

void moveAndSave(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.group().move(kMembers - 1, 0));
        benchmark::DoNotOptimize(history.view().save());
    }
}
BENCHMARK(moveAndSave)->Unit(benchmark::kMillisecond);

FetchRequest pinnedFirst() {
    FetchRequest request;
    request.sort = {{int(ClipAttribute::IsPinned), Qt::DescendingOrder},
                    {int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    request.limit = 50;
    return request;
}

void firstCards(benchmark::State& state) {
    History& history = History::shared();
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.view().fetch<Clip>(pinnedFirst()));
    }
}
BENCHMARK(firstCards)->Unit(benchmark::kMillisecond);

/// No clip matches, so that the whole history is looked at.
void firstCardsOfAnEmptyFilter(benchmark::State& state) {
    History& history = History::shared();
    FetchRequest request = pinnedFirst();
    request.conditions = {filterCondition(FilterType::Video)};
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.view().fetch<Clip>(request));
    }
}
BENCHMARK(firstCardsOfAnEmptyFilter)->Unit(benchmark::kMillisecond);

void countOfAFilter(benchmark::State& state) {
    History& history = History::shared();
    FetchRequest request;
    request.conditions = {filterCondition(FilterType::Image)};
    for (auto _ : state) {
        benchmark::DoNotOptimize(history.view().count(request));
    }
}
BENCHMARK(countOfAFilter)->Unit(benchmark::kMillisecond);

void deleteTheGroup(benchmark::State& state) {
    History& history = History::shared();
    const QList<QUuid> members = history.members();
    for (auto _ : state) {
        state.PauseTiming();
        const auto group = createGroup(history.view(), {u"copy"_s, Qt::blue, {}, members}).value();
        state.ResumeTiming();
        benchmark::DoNotOptimize(deleteGroup(*group));
    }
}
BENCHMARK(deleteTheGroup)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace quillo

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
