// SPDX-License-Identifier: MIT
// Searching and filtering, from the request to the first cards and to the whole answer as the
// main thread gets them; and the other ways of searching that were weighed against it.
#include <benchmark/benchmark.h>

#include <QByteArrayMatcher>
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cstring>
#include <map>

#include "bench_support.h"
#include "model/clip_history.h"
#include "model/search/clip_search.h"
#include "model/search/substring_finder.h"
#include "model/store/sqlite_database.h"

using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

void atEverySize(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("clips")->Unit(benchmark::kMicrosecond)->UseManualTime();
    for (const int clips : {1'000, 10'000, 200'000, 1'000'000}) {
        benchmark->Arg(clips);
    }
}

double megabytesResident() {
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.simplified().split(' ').at(1).toDouble() / 1024;
        }
    }
    return 0;
}

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// A search over a store of that size, ready to answer.
class Ready final {
public:
    explicit Ready(qsizetype clips) : m_copy(clips), m_persistence(m_copy.options()) {
        const double before = megabytesResident();
        const auto begin = std::chrono::steady_clock::now();
        m_search = std::make_unique<ClipSearch>(
            m_persistence,
            ClipSearch::Options{.folding = {}, .sourceName = [](const QString& id) { return id; }});
        QObject::connect(m_search.get(), &ClipSearch::firstFound,
                         [this](const SearchPage& page) { m_firstFound = page.number; });
        QObject::connect(m_search.get(), &ClipSearch::finished, [this](const SearchResult& result) {
            m_finished = result.number;
            m_total = result.total;
        });
        (void)ask({}, &Ready::m_finished);
        m_loadSeconds = secondsSince(begin);
        m_megabytes = megabytesResident() - before;
    }

    [[nodiscard]] double loadSeconds() const { return m_loadSeconds; }
    [[nodiscard]] double megabytes() const { return m_megabytes; }
    [[nodiscard]] qsizetype total() const { return m_total; }
    [[nodiscard]] PersistenceController& persistence() { return m_persistence; }
    [[nodiscard]] ClipSearch& search() { return *m_search; }

    /// Seconds until the first cards are known.
    double first(const ClipCriteria& criteria) { return ask(criteria, &Ready::m_firstFound); }
    /// Seconds until everything is known.
    double whole(const ClipCriteria& criteria) { return ask(criteria, &Ready::m_finished); }

private:
    double ask(const ClipCriteria& criteria, quint64 Ready::* answered) {
        const auto begin = std::chrono::steady_clock::now();
        const quint64 number = m_search->request(criteria);
        while (this->*answered != number) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return secondsSince(begin);
    }

    StoreCopy m_copy;
    PersistenceController m_persistence;
    std::unique_ptr<ClipSearch> m_search;
    quint64 m_firstFound = 0;
    quint64 m_finished = 0;
    qsizetype m_total = 0;
    double m_loadSeconds = 0;
    double m_megabytes = 0;
};

Ready& readyAt(qsizetype clips) {
    startQt();
    static std::map<qsizetype, std::unique_ptr<Ready>> kept;
    std::unique_ptr<Ready>& ready = kept[clips];
    if (ready == nullptr) {
        kept.clear();
        return *(kept[clips] = std::make_unique<Ready>(clips));
    }
    return *ready;
}

void loadAfterStart(benchmark::State& state) {
    startQt();
    double megabytes = 0;
    for (auto _ : state) {
        const Ready ready(state.range(0));
        state.SetIterationTime(ready.loadSeconds());
        megabytes = std::max(megabytes, ready.megabytes());
    }
    state.counters["MB"] = megabytes;
}
BENCHMARK(loadAfterStart)->Apply(atEverySize)->Iterations(3);

ClipCriteria text(const char* query) {
    return {.searchText = QString::fromUtf8(query), .typeFilter = {}, .group = {}};
}

enum class Until { FirstCards, Everything };

// Something else is asked in between, so that no answer is narrowed from the one before.
void search(benchmark::State& state, const ClipCriteria& criteria, Until until) {
    Ready& ready = readyAt(state.range(0));
    for (auto _ : state) {
        (void)ready.whole(text("qqqqq"));
        state.SetIterationTime(until == Until::FirstCards ? ready.first(criteria)
                                                          : ready.whole(criteria));
    }
    (void)ready.whole(criteria);
    state.counters["found"] = double(ready.total());
}
BENCHMARK_CAPTURE(search, letter_first, text("e"), Until::FirstCards)->Apply(atEverySize);
BENCHMARK_CAPTURE(search, letter_whole, text("e"), Until::Everything)->Apply(atEverySize);
BENCHMARK_CAPTURE(search, common_word_first, text("editor"), Until::FirstCards)->Apply(atEverySize);
BENCHMARK_CAPTURE(search, common_word_whole, text("editor"), Until::Everything)->Apply(atEverySize);
BENCHMARK_CAPTURE(search, rare_word, text("clip 777:"), Until::FirstCards)->Apply(atEverySize);
BENCHMARK_CAPTURE(search, nothing, text("zzyzx road"), Until::FirstCards)->Apply(atEverySize);
BENCHMARK_CAPTURE(search, images_first,
                  {.searchText = {}, .typeFilter = FilterType::Image, .group = {}},
                  Until::FirstCards)
    ->Apply(atEverySize);
BENCHMARK_CAPTURE(search, images_whole,
                  {.searchText = {}, .typeFilter = FilterType::Image, .group = {}},
                  Until::Everything)
    ->Apply(atEverySize);

// Each letter of a word after the one before it; the time is that of the slowest letter.
void wordTyped(benchmark::State& state) {
    Ready& ready = readyAt(state.range(0));
    for (auto _ : state) {
        double slowest = 0;
        for (const char* typed : {"e", "ed", "edi", "edit", "edito", "editor"}) {
            slowest = std::max(slowest, ready.first(text(typed)));
        }
        state.SetIterationTime(slowest);
    }
}
BENCHMARK(wordTyped)->Apply(atEverySize);

void typeCounts(benchmark::State& state) {
    Ready& ready = readyAt(state.range(0));
    for (auto _ : state) {
        state.SetIterationTime(ready.whole({}));
    }
}
BENCHMARK(typeCounts)->Apply(atEverySize);

// A capture's way into the store while one search after another asks for long texts there.
void captureWhileSearching(benchmark::State& state) {
    Ready& ready = readyAt(state.range(0));
    const SystemClock clock;
    qint64 number = 0;
    for (auto _ : state) {
        ready.search().request(text("editor"));
        const auto begin = std::chrono::steady_clock::now();
        std::atomic<double> seconds = 0;
        ready.persistence().perform([&, number](ObjectContext& context) {
            (void)insertOrBump(context, QByteArray::number(number), clock,
                               [&](Clip& clip) { clip.setPlaintext(textOf(number, kShortText)); });
            seconds = secondsSince(begin);
        });
        ready.persistence().waitUntilIdle();
        state.SetIterationTime(seconds);
        ++number;
    }
}
BENCHMARK(captureWhileSearching)->Apply(atEverySize)->Iterations(50);

// --- What was weighed.

enum class Way { Finder, LibraryCall, Matcher };

void scanBytes(benchmark::State& state, Way way, const QByteArray& needle) {
    QByteArray bytes;
    for (qint64 i = 0; bytes.size() < 40'000'000; ++i) {
        bytes += textOf(i, kShortText).toLower().toUtf8() + '\xff';
    }
    const SubstringFinder finder(needle);
    const QByteArrayMatcher matcher(needle);
    for (auto _ : state) {
        switch (way) {
            case Way::Finder:
                benchmark::DoNotOptimize(finder.find({bytes.constData(), size_t(bytes.size())}));
                break;
            case Way::LibraryCall:
                benchmark::DoNotOptimize(::memmem(bytes.constData(), size_t(bytes.size()),
                                                  needle.constData(), size_t(needle.size())));
                break;
            case Way::Matcher:
                benchmark::DoNotOptimize(matcher.indexIn(bytes));
                break;
        }
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes.size());
}
BENCHMARK_CAPTURE(scanBytes, finder_10, Way::Finder, "zzyzx road")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scanBytes, memmem_10, Way::LibraryCall, "zzyzx road")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scanBytes, matcher_10, Way::Matcher, "zzyzx road")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scanBytes, finder_3, Way::Finder, "p z")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scanBytes, memmem_3, Way::LibraryCall, "p z")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scanBytes, matcher_3, Way::Matcher, "p z")->Unit(benchmark::kMillisecond);

void must(const Result<void>& done) {
    if (!done) {
        qFatal("%s", qUtf8Printable(done.error().text));
    }
}

// SQLite's full-text index over trigrams: containment too, from three characters on.
void trigramIndex(benchmark::State& state, const char* query) {
    startQt();
    const QTemporaryDir folder;
    const QByteArray file = QFile::encodeName(folder.filePath(u"index"_s));
    QFile(QString::fromLocal8Bit(file)).open(QIODevice::WriteOnly);
    const auto database = SqliteDatabase::open(file).value();
    must(database->execute("CREATE VIRTUAL TABLE t USING fts5(x, tokenize='trigram')"));
    const auto begin = std::chrono::steady_clock::now();
    must(database->execute("BEGIN"));
    for (qint64 i = 0; i < state.range(0); ++i) {
        (void)database->run("INSERT INTO t(rowid, x) VALUES(?, ?)",
                            {Value(i), Value(textOf(i, i % 50 == 0 ? kLongText : kShortText))});
    }
    must(database->execute("COMMIT"));
    state.counters["build_s"] = secondsSince(begin);
    state.counters["file_MB"] = double(QFile(QString::fromLocal8Bit(file)).size()) / 1e6;
    const QString match = u'"' + QString::fromUtf8(query) + u'"';
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            database->queryInteger("SELECT count(*) FROM (SELECT rowid FROM t WHERE t MATCH ? "
                                   "ORDER BY rowid DESC LIMIT 50)",
                                   {Value(match)}));
    }
}
BENCHMARK_CAPTURE(trigramIndex, common_word, "editor")
    ->ArgName("clips")
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(trigramIndex, nothing, "zzyzx road")
    ->ArgName("clips")
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
