// SPDX-License-Identifier: MIT
// The store on the disk, at three sizes. What writes ends with the one fsync of its commit.
#include <benchmark/benchmark.h>

#include "bench_support.h"
#include "model/clip_history.h"

namespace quillo::bench {
namespace {

void atEverySize(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("clips")->Arg(1'000)->Arg(10'000)->Arg(200'000)->Unit(
        benchmark::kMicrosecond);
}

FetchRequest newestFifty() {
    FetchRequest request;
    request.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    request.limit = 50;
    return request;
}

QByteArray digest(qint64 number) {
    return QByteArray("a digest of thirty-two bytes, no. ") + QByteArray::number(number);
}

// A deletion's clearing of the log must not fall into the next measurement.
template <typename Work>
void measure(benchmark::State& state, PersistenceController& persistence, Work work) {
    qint64 number = 0;
    for (auto _ : state) {
        bool isDone = false;
        persistence.perform([&](ObjectContext& context) {
            const auto begin = std::chrono::steady_clock::now();
            isDone = work(context, number);
            state.SetIterationTime(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        });
        persistence.waitUntilIdle();
        ++number;
        if (!isDone) {
            return state.SkipWithError("the store refused");
        }
    }
}

// And closed: the last connection copies the log into the file.
void openStore(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    for (auto _ : state) {
        const auto persistence = std::make_unique<PersistenceController>(copy.options());
        if (persistence->state() != StoreState::Loaded) {
            return state.SkipWithError("not opened");
        }
    }
}
BENCHMARK(openStore)->Apply(atEverySize)->UseRealTime();

// As after a start: nothing is held, so every record is made.
void listNewestFifty(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    PersistenceController persistence(copy.options());
    for (auto _ : state) {
        const auto clips = persistence.viewContext().fetch<Clip>(newestFifty());
        if (!clips || clips->size() != 50) {
            return state.SkipWithError("not listed");
        }
    }
}
BENCHMARK(listNewestFifty)->Apply(atEverySize);

void countClips(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    PersistenceController persistence(copy.options());
    for (auto _ : state) {
        benchmark::DoNotOptimize(persistence.viewContext().count({}));
    }
}
BENCHMARK(countClips)->Apply(atEverySize);

void insertAtTheLimit(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    PersistenceController persistence(copy.options());
    measure(state, persistence, [&](ObjectContext& context, qint64 number) {
        const SystemClock clock;
        const auto stored = insertOrBump(context, digest(number), clock, [&](Clip& clip) {
            clip.setPlaintext(textOf(number, kShortText));
        });
        return stored && *stored == StoreOutcome::Inserted &&
               enforceHistoryLimit(context, state.range(0)) == 1;
    });
}
BENCHMARK(insertAtTheLimit)->Apply(atEverySize)->UseManualTime();

void insertWithoutLimit(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    PersistenceController persistence(copy.options());
    measure(state, persistence, [&](ObjectContext& context, qint64 number) {
        const SystemClock clock;
        const auto stored = insertOrBump(context, digest(number), clock, [&](Clip& clip) {
            clip.setPlaintext(textOf(number, kShortText));
        });
        return stored && *stored == StoreOutcome::Inserted;
    });
}
BENCHMARK(insertWithoutLimit)->Apply(atEverySize)->UseManualTime();

void bumpDuplicateClip(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    PersistenceController persistence(copy.options());
    const SystemClock clock;
    persistence.perform([&](ObjectContext& context) {
        (void)insertOrBump(context, digest(0), clock,
                           [](Clip& clip) { clip.setPlaintext(textOf(0, kShortText)); });
    });
    measure(state, persistence, [&](ObjectContext& context, qint64) {
        return bumpDuplicate(context, digest(0), clock) != nullptr;
    });
}
BENCHMARK(bumpDuplicateClip)->Apply(atEverySize)->UseManualTime();

void deleteOneClip(benchmark::State& state) {
    startQt();
    const StoreCopy copy(state.range(0));
    PersistenceController persistence(copy.options());
    measure(state, persistence, [&](ObjectContext& context, qint64) {
        FetchRequest request = newestFifty();
        request.limit = 1;
        const auto newest = context.fetch<Clip>(request);
        if (!newest || newest->isEmpty()) {
            return false;
        }
        context.remove(*newest->first());
        return context.save().has_value();
    });
}
BENCHMARK(deleteOneClip)->Apply(atEverySize)->UseManualTime()->Iterations(50);

// With the traces: the log emptied and the file's space given back.
void deleteAll(benchmark::State& state) {
    startQt();
    for (auto _ : state) {
        state.PauseTiming();
        const StoreCopy copy(state.range(0));
        auto persistence = std::make_unique<PersistenceController>(copy.options());
        state.ResumeTiming();
        persistence->perform([](ObjectContext& context) { (void)context.batchDelete({}); });
        persistence->eraseTraces();
        persistence->waitUntilIdle();
        state.PauseTiming();
        if (persistence->viewContext().count({}) != 0) {
            state.SkipWithError("something is left");
        }
        persistence.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(deleteAll)
    ->Apply(atEverySize)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
