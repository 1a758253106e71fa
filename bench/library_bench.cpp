// SPDX-License-Identifier: MIT
// The library on a large history, painted into a picture: the work of the program without a
// display server. The first argument of each is how many clips there are.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <QScrollBar>

#include "bench_support.h"
#include "support/library_rig.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

using testing::waitUntil;

/// The library on a kept store.
class Library final {
public:
    explicit Library(qsizetype clips) : m_copy(clips), m_rig(m_copy.options(), m_clock) {}

    /// Makes it, and paints what is seen first.
    void open() {
        m_view.reset();
        m_view = m_rig.makeView();
        m_view->resize(1000, 700);
        m_view->show();
        paint();
    }

    void paint() { m_view->grab(); }

    void paintGrid() { m_view->grid().viewport()->grab(); }

    void waitForWholeList() {
        (void)waitUntil([this] { return m_view->clips().isComplete(); }, std::chrono::seconds(120));
    }

    /// Waits for the answer and gives how many milliseconds it took until it was painted.
    double search(const QString& text) {
        const auto begin = std::chrono::steady_clock::now();
        m_view->clips().setSearchText(text);
        while (m_view->clips().isPending()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        }
        paintGrid();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
            .count();
    }

    [[nodiscard]] LibraryView& view() { return *m_view; }

private:
    StoreCopy m_copy;
    SystemClock m_clock;
    testing::LibraryRig m_rig;
    std::unique_ptr<LibraryView> m_view;
};

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("clips")->Arg(1'000)->Arg(200'000)->Unit(benchmark::kMillisecond);
}

void openLibrary(benchmark::State& state) {
    startQt();
    Library library(state.range(0));
    for (auto _ : state) {
        library.open();
    }
}
BENCHMARK(openLibrary)->Apply(sizes);

void switchSection(benchmark::State& state) {
    startQt();
    Library library(state.range(0));
    library.open();
    library.waitForWholeList();
    bool isFavorites = false;
    for (auto _ : state) {
        isFavorites = !isFavorites;
        library.view().showSection({.kind = isFavorites ? LibrarySection::Kind::Favorites
                                                        : LibrarySection::Kind::AllClips});
        library.paint();
    }
}
BENCHMARK(switchSection)->Apply(sizes);

void typeLetter(benchmark::State& state) {
    startQt();
    Library library(state.range(0));
    library.open();
    library.waitForWholeList();
    double longest = 0;
    int digit = 0;
    for (auto _ : state) {
        digit = (digit + 1) % 9;
        longest = std::max(longest, library.search(u"Clip %1"_s.arg(digit + 1)));
    }
    state.counters["longest_ms"] = longest;
}
BENCHMARK(typeLetter)->Apply(sizes);

// A row further, somewhere in the history.
void scrollRow(benchmark::State& state) {
    startQt();
    Library library(state.range(0));
    library.open();
    library.waitForWholeList();
    QScrollBar& bar = *library.view().grid().verticalScrollBar();
    bar.setValue(bar.maximum() / 2);
    double longest = 0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        bar.setValue(bar.value() + ClipGridLayout::kRowStep);
        library.paintGrid();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - begin;
        longest = std::max(longest, took.count());
    }
    state.counters["longest_ms"] = longest;
}
BENCHMARK(scrollRow)->Apply(sizes);

double residentMegabytes() {
    QFile file(u"/proc/self/statm"_s);
    (void)file.open(QIODevice::ReadOnly);
    const auto pages = file.readAll().split(' ').value(1).toLongLong();
    return double(pages * sysconf(_SC_PAGESIZE)) / 1e6;
}

// Row by row through 10,000 images, each row until its pictures are there; the memory at the end
// is to be what it was after the first thousand.
void scrollImages(benchmark::State& state) {
    startQt();
    Library library(state.range(0));
    library.open();
    library.waitForWholeList();
    library.view().clips().setTypeFilter(FilterType::Image);
    library.waitForWholeList();
    QScrollBar& bar = *library.view().grid().verticalScrollBar();
    int row = 0;
    for (auto _ : state) {
        bar.setValue(bar.value() + ClipGridLayout::kRowStep);
        library.paintGrid();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        if (++row == 334) {
            state.counters["early_MB"] = residentMegabytes();
        }
    }
    state.counters["late_MB"] = residentMegabytes();
}
BENCHMARK(scrollImages)
    ->ArgName("clips")
    ->Arg(200'000)
    ->Iterations(3'334)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
