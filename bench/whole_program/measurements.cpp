// SPDX-License-Identifier: MIT
#include "whole_program/measurements.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryFile>
#include <algorithm>
#include <thread>
#include <utility>

#include "bench_support.h"
#include "platform/images/qt_image_codec.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

constexpr const char* kSaved = "Saved new ";
constexpr int kHotkeyRuns = 40;
constexpr int kNotches = 40;
constexpr int kManyCopies = 200;
constexpr auto kCopyPause = 20ms;
// The view has merged the clip, listed it and decoded its picture.
constexpr auto kToSettle = 150ms;
// A press within 0.3 s of the last accepted one is ignored.
constexpr auto kDebounce = 350ms;
constexpr auto kStill = 200ms;
constexpr int kHashesInControl = 4;

void rest(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

// A thread that ended was woken for that.
qint64 wakeUpsSince(const QHash<QString, qint64>& before, const QHash<QString, qint64>& now) {
    qint64 count = 0;
    for (auto thread = now.cbegin(); thread != now.cend(); ++thread) {
        count += thread.value() - before.value(thread.key(), 0);
    }
    return count + std::ranges::count_if(
                       before.keys(), [&](const QString& thread) { return !now.contains(thread); });
}

void makeFreshStore(const Settings& settings, qsizetype clips) {
    QDir(settings.dataHome + u"/Quillo"_s).removeRecursively();
    copyStore(keptStore(clips), settings.dataHome);
}

}  // namespace

Measurements::Measurements(const Settings& settings, qsizetype clips)
    : m_settings(settings), m_clips(clips) {
    makeFreshStore(settings, clips);
    rest(300ms);  // The window manager gives the other program the focus.
}

bool Measurements::isWanted(const QString& group) const {
    return m_settings.groups.isEmpty() || m_settings.groups.contains(group);
}

QList<Row> Measurements::run() {
    starts();
    m_quillo = std::make_unique<QuilloProcess>(m_settings.program);
    rest(500ms);
    copyNewColor();
    hide(show());
    using Group = std::pair<QString, void (Measurements::*)()>;
    for (const auto& [name, measure] :
         {Group{u"hotkey"_s, &Measurements::shows}, Group{u"paste"_s, &Measurements::pastes},
          Group{u"scroll"_s, &Measurements::scrolls}, Group{u"letter"_s, &Measurements::letters},
          Group{u"copy"_s, &Measurements::copies}, Group{u"many"_s, &Measurements::manyCopies},
          Group{u"idle"_s, &Measurements::idles}}) {
        if (isWanted(name)) {
            (this->*measure)();
        }
    }
    m_quillo.reset();
    return m_rows;
}

std::uint32_t Measurements::copyNewColor() {
    const auto color = std::uint32_t((0x204060 + ++m_number * 0x030507) & 0xffffff);
    const Moment copied =
        m_other.copyText('#' + QByteArray::number(color, 16).rightJustified(6, '0'));
    if (!m_quillo->logged(kSaved, copied)) {
        qFatal("A copy was not stored");
    }
    rest(kToSettle);
    return color;
}

void Measurements::findPanel() {
    for (int look = 0; look < 200; ++look) {
        if (const auto place = m_screen.window("Quillo")) {
            m_panel = *place;
            return;
        }
        rest(10ms);
    }
    qFatal("The panel does not come");
}

// The first show of all tells where the panel is; its screen was the other program's before.
Measurements::Shown Measurements::show() {
    if (m_panel.isNull()) {
        m_screen.press({Key::Super, Key::Shift, Key::V});
        m_screen.release({Key::V, Key::Shift, Key::Super});
        findPanel();
        rest(kDebounce);
        m_screen.press({Key::Escape});
        m_screen.release({Key::Escape});
        while (m_screen.window("Quillo")) {
            rest(10ms);
        }
        rest(kDebounce);
    }
    const QByteArray before = m_screen.lines(m_panel);
    const Moment pressed = m_screen.press({Key::Super, Key::Shift, Key::V});
    const auto frames = m_screen.watch(m_panel, before, kStill);
    m_screen.release({Key::V, Key::Shift, Key::Super});
    if (!frames) {
        qFatal("The panel was not painted");
    }
    rest(kDebounce - kStill);
    return {*frames, pressed, before};
}

void Measurements::hide(const Shown& shown) {
    m_screen.press({Key::Escape});
    m_screen.release({Key::Escape});
    for (int look = 0; m_screen.lines(m_panel) != shown.before; ++look) {
        if (look > 200) {
            qFatal("The panel does not go");
        }
        rest(10ms);
    }
    rest(kDebounce);
}

void Measurements::starts() {
    Row start{u"start → hotkey registered, watcher running"_s, u"ms"_s, Judged::Median, 100, {}};
    Row first{u"first show after start"_s, u"ms"_s, Judged::Median, 40, {}};
    Row memory{u"memory (RSS), panel shown once"_s,
               u"MB"_s,
               Judged::Median,
               m_clips <= 1'000 ? 80.0 : 180.0,
               {}};
    for (int run = 0; run <= m_settings.runs && isWanted(u"start"_s); ++run) {
        m_quillo = std::make_unique<QuilloProcess>(m_settings.program);
        rest(1s);
        const Shown shown = show();
        // The first one fills the disk's cache and finds the panel.
        if (run > 0) {
            start.samples.add(m_quillo->startMs());
            first.samples.add(millisecondsBetween(shown.pressed, shown.frames.firstLikeLast));
            memory.samples.add(m_quillo->residentMegabytes());
        }
        hide(shown);
        m_quillo.reset();
    }
    if (start.samples.count() > 0) {
        m_rows += {start, first, memory};
    }
}

void Measurements::shows() {
    Row median{u"hotkey → panel painted with the right cards"_s, u"ms"_s, Judged::Median, 10, {}};
    Row window{u"hotkey → any change on the screen"_s, u"ms"_s, Judged::Not, 0, {}};
    for (int run = 0; run < kHotkeyRuns; ++run) {
        const std::uint32_t color = copyNewColor();
        const Shown shown = show();
        if (ScreenProbe::firstCardColor(shown.frames.last, m_panel) != color) {
            qFatal("The panel does not show the newest clip");
        }
        median.samples.add(millisecondsBetween(shown.pressed, shown.frames.firstLikeLast));
        window.samples.add(millisecondsBetween(shown.pressed, shown.frames.firstChange));
        hide(shown);
    }
    Row slowest = median;
    slowest.by = Judged::Percentile95;
    slowest.budget = 16;
    m_rows += {median, slowest, window};
}

void Measurements::pastes() {
    Row row{u"chosen → paste key in the other program"_s, u"ms"_s, Judged::Median, 35, {}};
    for (int run = 0; run < m_settings.runs; ++run) {
        (void)show();
        const Moment chosen = m_screen.press({Key::Return});
        m_screen.release({Key::Return});
        const auto key = m_other.pasteKeyAfter(chosen);
        if (!key) {
            qFatal("The paste key did not come");
        }
        row.samples.add(millisecondsBetween(chosen, *key));
        rest(2 * kDebounce);
    }
    m_rows += row;
}

// From the notch to the screen, so the display server's part is in it.
void Measurements::scrolls() {
    Row row{u"scrolling: a notch → painted"_s, u"ms"_s, Judged::Largest, 8, {}};
    const Shown shown = show();
    m_screen.movePointer(m_panel.center());
    QByteArray before = m_screen.lines(m_panel);
    for (int notch = 0; notch < kNotches; ++notch) {
        const Moment turned = m_screen.turnWheelDown();
        const auto frames = m_screen.watch(m_panel, before, 60ms);
        if (!frames) {
            break;
        }
        row.samples.add(millisecondsBetween(turned, frames->firstChange));
        before = frames->last;
    }
    m_screen.movePointer(QPoint(5, 5));
    hide(shown);
    m_rows += row;
}

// "p " is in front of each text's number, so that every further digit, and its removal, gives other
// cards.
void Measurements::letters() {
    Row row{
        u"a letter typed in the search field → cards painted"_s, u"ms"_s, Judged::Median, 10, {}};
    const Shown shown = show();
    QByteArray before = m_screen.lines(m_panel);
    for (const Key key : {Key::P, Key::Space}) {
        m_screen.press({key});
        m_screen.release({key});
        rest(kToSettle);
    }
    before = m_screen.lines(m_panel);
    for (int typed = 0; typed < kNotches; ++typed) {
        const Key key = typed % 2 == 0 ? Key::Three : Key::BackSpace;
        const Moment pressed = m_screen.press({key});
        m_screen.release({key});
        const auto frames = m_screen.watch(m_panel, before, 60ms);
        if (!frames) {
            qFatal("A letter changed nothing");
        }
        row.samples.add(millisecondsBetween(pressed, frames->firstChange));
        before = frames->last;
    }
    hide(shown);
    m_rows += row;
}

void Measurements::measureCopy(Moment copied, Row& wait, Row& work) {
    const auto saved = m_quillo->logged(kSaved, copied);
    const auto asked = m_other.firstRequest();
    if (!saved || !asked) {
        qFatal("A copy was not stored");
    }
    wait.samples.add(millisecondsBetween(copied, *asked));
    work.samples.add(millisecondsBetween(*asked, *saved));
    rest(kToSettle);
}

void Measurements::copies() {
    Row wait{u"copy → tick"_s, u"ms"_s, Judged::Not, 0, {}};
    Row brief{u"tick → stored: text of 200 characters"_s, u"ms"_s, Judged::Median, 2, {}};
    Row large{u"tick → stored: text of 1 MB"_s, u"ms"_s, Judged::Median, 15, {}};
    Row requests{
        u"requests to the program that copied a short text"_s, u""_s, Judged::Largest, 3, {}};
    for (int run = 0; run < 2 * m_settings.runs; ++run) {
        const int number = 50'000'000 + ++m_number;
        measureCopy(m_other.copyText(textOf(number, kShortText).toUtf8()), wait, brief);
        requests.samples.add(m_other.requestCount());
    }
    for (int run = 0; run < m_settings.runs; ++run) {
        const int number = 50'000'000 + ++m_number;
        measureCopy(m_other.copyText(textOf(number, 1'000'000).toUtf8()), wait, large);
    }
    m_rows += {brief, large, requests};
    copyPictures(u"tick → stored: PNG 1920 × 1080, screenshot"_s, screenshot());
    copyPictures(u"tick → stored: PNG 1920 × 1080, photograph"_s, photo());
    m_rows += wait;
}

void Measurements::copyPictures(const QString& name, const QImage& picture) {
    Row wait;
    Row row{name, u"ms"_s, Judged::Median, 60, {}};
    QImage changing = picture;
    for (int run = 0; run < m_settings.runs; ++run) {
        ++m_number;
        changing.setPixel(m_number % changing.width(), 0, qRgb(m_number % 256, 1, 7));
        const QByteArray png = QtImageCodec().encodePng(changing).value_or(QByteArray());
        measureCopy(m_other.copyPng(png), wait, row);
    }
    m_rows += row;
}

void Measurements::manyCopies() {
    Row row{u"processor time of 200 copies, 20 ms apart"_s, u"s"_s, Judged::Median, 0.3, {}};
    for (int run = 0; run < m_settings.runs; ++run) {
        const double before = m_quillo->cpuSeconds();
        for (int copy = 0; copy < kManyCopies; ++copy) {
            m_other.copyText(textOf(50'000'000 + ++m_number, kShortText).toUtf8());
            rest(kCopyPause);
        }
        rest(1s);
        row.samples.add(m_quillo->cpuSeconds() - before);
    }
    m_rows += row;
}

void Measurements::idles() {
    Row row{u"wake-ups in %1 s without a copy"_s.arg(m_settings.idle.count()),
            u""_s,
            Judged::Largest,
            0,
            {}};
    rest(5s);  // Threads that rest for a while before they end have ended.
    const QHash<QString, qint64> before = m_quillo->wakeUps();
    std::this_thread::sleep_for(m_settings.idle);
    row.samples.add(double(wakeUpsSince(before, m_quillo->wakeUps())));
    m_rows += row;
}

QList<Row> Measurements::controls(const Settings& settings) {
    Row roundTrip{u"control: round trip to the display server"_s, u"ms"_s, Judged::Not, 0, {}};
    Row sync{u"control: fdatasync of 4 kB"_s, u"ms"_s, Judged::Not, 0, {}};
    Row loop{u"control: SHA-256 of 1 MB, four times"_s, u"ms"_s, Judged::Not, 0, {}};
    ScreenProbe screen;
    QTemporaryFile file(settings.dataHome + u"/control-XXXXXX"_s);
    if (!file.open()) {
        qFatal("No file beside the store");
    }
    const QByteArray page(4096, 'x');
    const QByteArray block(1'000'000, 'x');
    for (int run = 0; run < kHotkeyRuns; ++run) {
        roundTrip.samples.add(screen.roundTripMs());
        Moment begin = std::chrono::steady_clock::now();
        const bool isWritten = write(file.handle(), page.constData(), size_t(page.size())) > 0 &&
                               fdatasync(file.handle()) == 0;
        if (isWritten) {
            sync.samples.add(millisecondsBetween(begin, std::chrono::steady_clock::now()));
        }
        begin = std::chrono::steady_clock::now();
        for (int i = 0; i < kHashesInControl; ++i) {
            (void)QCryptographicHash::hash(block, QCryptographicHash::Sha256);
        }
        loop.samples.add(millisecondsBetween(begin, std::chrono::steady_clock::now()));
    }
    return {roundTrip, sync, loop};
}

}  // namespace quillo::bench
