// SPDX-License-Identifier: MIT
#include "capture/pasteboard_watcher.h"

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcWatcher, "PasteboardWatcher")

constexpr std::chrono::milliseconds kTickPeriod{150};

long long sizeOf(const std::optional<QByteArray>& bytes) {
    return bytes ? bytes->size() : 0;
}

void logSnapshot(const PasteboardSnapshot& snapshot) {
    qCDebug(lcWatcher,
            "Snapshot: image=%d (%lld bytes), rtf=%d, html=%d, files=%lld, url=%d, text=%d",
            snapshot.imageData.has_value(), sizeOf(snapshot.imageData),
            snapshot.rtfData.has_value(), snapshot.htmlData.has_value(),
            static_cast<long long>(snapshot.fileUrls ? snapshot.fileUrls->size() : 0),
            snapshot.urlString.has_value(), snapshot.plainText.has_value());
}

}  // namespace

PasteboardWatcher::PasteboardWatcher(PasteboardWatcherServices services, QObject* parent)
    : QObject(parent), m_services(services), m_lastChangeCount(services.pasteboard.changeCount()) {}

PasteboardWatcher::~PasteboardWatcher() {
    m_services.pasteboard.setListener({});
    // A program that does not answer must not hold the main thread for the length of a read.
    m_services.pasteboard.endReads();
    m_services.timer.stop();
}

void PasteboardWatcher::start() {
    if (m_isRunning) {
        return;
    }
    m_services.pasteboard.setListener(
        [this](PasteboardChange change) { pasteboardChanged(change); });
    m_services.timer.start(kTickPeriod, [this] { checkForChanges(); });
    setRunning(true);
    qCInfo(lcWatcher, "Pasteboard watcher started (changeCount: %lld)",
           static_cast<long long>(m_lastChangeCount));
}

void PasteboardWatcher::stop() {
    m_services.pasteboard.setListener({});
    // A program that does not answer must not hold the main thread for the length of a read.
    m_services.pasteboard.endReads();
    m_services.timer.stop();
    setRunning(false);
    qCInfo(lcWatcher, "Pasteboard watcher stopped");
}

void PasteboardWatcher::setRunning(bool isRunning) {
    if (m_isRunning != isRunning) {
        m_isRunning = isRunning;
        Q_EMIT isRunningChanged(isRunning);
    }
}

void PasteboardWatcher::checkSoon() {
    if (m_isRunning && m_services.pasteboard.changeCount() != m_lastChangeCount) {
        m_services.timer.fireNow();
    }
}

void PasteboardWatcher::pasteboardChanged(PasteboardChange change) {
    if (change == PasteboardChange::LeavingSoon) {
        m_services.timer.fireNow();
    } else {
        m_services.timer.arm();
    }
}

void PasteboardWatcher::checkForChanges() {
    std::unique_ptr<PasteboardSource> source = m_services.pasteboard.open();
    const qint64 changeCount = source->changeCount();
    if (changeCount == m_lastChangeCount) {
        return;
    }
    PasteboardReading reading(std::move(source));
    const bool isStored = capture(reading);
    m_services.pasteboard.settle(changeCount,
                                 isStored ? std::optional(reading.kept()) : std::nullopt);
}

bool PasteboardWatcher::capture(PasteboardReading& reading) {
    const qint64 changeCount = reading.changeCount();
    if (reading.string(PasteboardType::Marker)) {
        m_lastChangeCount = changeCount;
        qCDebug(lcWatcher, "Skipping clipboard capture due to custom marker");
        return false;
    }
    m_lastChangeCount = changeCount;
    qCDebug(lcWatcher, "Pasteboard changed, changeCount: %lld",
            static_cast<long long>(changeCount));
    if (reading.isConcealed()) {
        qCInfo(lcWatcher, "Skipping sensitive content");
        return false;
    }
    const std::optional<QString> source = sourceApplication();
    qCDebug(lcWatcher, "Source app: %s", source ? qUtf8Printable(*source) : "unknown");
    const QStringList types = reading.types();
    if (types.isEmpty()) {
        // Cleared, or owned by a program that says nothing: there is nothing to recognise.
        qCDebug(lcWatcher, "The pasteboard is empty");
        return false;
    }
    qCDebug(lcWatcher, "Available types: %s", qUtf8Printable(types.join(QStringLiteral(", "))));
    const PasteboardSnapshot snapshot =
        PasteboardSnapshotReader(reading, m_services.images, captureSwitches(m_services.defaults))
            .readSnapshot();
    logSnapshot(snapshot);
    if (reading.wasSuperseded()) {
        // Parts of it may be missing; the newer copy has armed the next tick.
        qCDebug(lcWatcher, "A newer copy ended the reading");
        return false;
    }
    return dispatch(snapshot, source);
}

std::optional<QString> PasteboardWatcher::sourceApplication() const {
    const std::optional<RunningApplication> application =
        m_services.workspace.frontmostApplication();
    if (!application || application->bundleIdentifier.isEmpty()) {
        return std::nullopt;
    }
    return application->bundleIdentifier;
}

bool PasteboardWatcher::dispatch(const PasteboardSnapshot& snapshot,
                                 const std::optional<QString>& source) {
    ClipSaver& saver = m_services.saver;
    switch (captureKind(snapshot)) {
        case CaptureKind::Image:
            qCInfo(lcWatcher, "Detected: IMAGE (%lld bytes)", sizeOf(snapshot.imageData));
            saver.saveImageClip(*snapshot.imageData, source, snapshot.imageFileName);
            return true;
        case CaptureKind::Files:
            qCInfo(lcWatcher, "Detected: FILE URLs (%lld files)",
                   static_cast<long long>(snapshot.fileUrls->size()));
            saver.saveFileClip(*snapshot.fileUrls, source);
            return true;
        case CaptureKind::Rtf:
            qCInfo(lcWatcher, "Detected: RTF (%lld bytes)", sizeOf(snapshot.rtfData));
            saver.saveRtfClip(*snapshot.rtfData, source);
            return true;
        case CaptureKind::Html:
            qCInfo(lcWatcher, "Detected: HTML (%lld bytes)", sizeOf(snapshot.htmlData));
            saver.saveHtmlClip(*snapshot.htmlData, source);
            return true;
        case CaptureKind::Url:
            qCInfo(lcWatcher, "Detected: URL");
            saver.saveUrlClip(*snapshot.urlString, source);
            return true;
        case CaptureKind::Text:
            qCInfo(lcWatcher, "Detected: TEXT");
            return saver.saveTextClip(*snapshot.plainText, source);
        case CaptureKind::Unwanted:
            qCInfo(lcWatcher, "Skipping a kind that is switched off");
            return false;
        case CaptureKind::Nothing:
            qCCritical(lcWatcher, "No recognized content type found");
            return false;
    }
    return false;
}

}  // namespace quillo
