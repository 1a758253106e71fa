// SPDX-License-Identifier: MIT
// The popover: from the request to the rows painted.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QLineEdit>
#include <QListView>
#include <map>

#include "app/status/quick_clip_view.h"
#include "bench_support.h"

using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

/// A store of that size whose search has read it.
class Ready final {
public:
    explicit Ready(qsizetype clips) : m_copy(clips), m_persistence(m_copy.options()) {
        bool isRead = false;
        QObject::connect(&m_search, &ClipSearch::finished, [&] { isRead = true; });
        m_search.request({});
        while (!isRead) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    [[nodiscard]] ClipListServices services() {
        return {m_persistence, m_search, m_clock, [](ClipType) { return QColor(Qt::blue); },
                [](const Clip&) {}};
    }

private:
    StoreCopy m_copy;
    SystemClock m_clock;
    PersistenceController m_persistence;
    ClipSearch m_search{m_persistence, {}};
};

Ready& readyAt(qsizetype clips) {
    startQt();
    static std::map<qsizetype, std::unique_ptr<Ready>> kept;
    std::unique_ptr<Ready>& ready = kept[clips];
    if (ready == nullptr) {
        ready = std::make_unique<Ready>(clips);
    }
    return *ready;
}

void waitForRows(const QWidget& view, const std::function<bool(int)>& areThere) {
    const QAbstractItemModel* model = view.findChild<QListView*>()->model();
    while (!areThere(model->rowCount())) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void openPopover(benchmark::State& state) {
    Ready& ready = readyAt(state.range(0));
    for (auto _ : state) {
        QuickClipView view(ready.services());
        view.resize(400, 500);
        benchmark::DoNotOptimize(view.grab());
    }
}
BENCHMARK(openPopover)->Arg(1'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

void searchInPopover(benchmark::State& state) {
    Ready& ready = readyAt(state.range(0));
    QuickClipView view(ready.services());
    view.resize(400, 500);
    auto* field = view.findChild<QLineEdit*>();
    int rows = 0;
    for (auto _ : state) {
        state.PauseTiming();
        field->setText(u"no such text anywhere"_s);
        waitForRows(view, [](int count) { return count == 0; });
        state.ResumeTiming();
        field->setText(u"a"_s);
        waitForRows(view, [&](int count) { return (rows = count) > 0; });
        benchmark::DoNotOptimize(view.grab());
    }
    state.counters["rows"] = rows;
}
BENCHMARK(searchInPopover)->Arg(1'000)->Arg(200'000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
