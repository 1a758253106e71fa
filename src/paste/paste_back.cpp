// SPDX-License-Identifier: MIT
#include "paste/paste_back.h"

#include "base/logging.h"
#include "paste/clip_mime_data.h"
#include "paste/paste_target.h"
#include "paste/text_transformation_service.h"

#include <QTimer>
#include <chrono>
#include <utility>

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcPaste, "PasteBack")

constexpr std::chrono::milliseconds kPasteDelay{30};
constexpr std::chrono::milliseconds kFocusDeadline{500};

}  // namespace

PasteBack::PasteBack(PasteBackServices services, QObject* parent)
    : QObject(parent), m_services(services) {}

void PasteBack::copyToPasteboard(const Clip& clip,
                                 const std::optional<RunningApplication>& target) {
    PasteboardContents contents = contentsByKind(clip, m_services.readers);
    if (target && keysFor(*target) == PasteKeys::ShiftInsert) {
        // A picture has no text, but its keystroke must not paste what was there before.
        m_services.pasteboard.writePrimary(contents);
    }
    m_services.pasteboard.write(std::move(contents));
}

void PasteBack::copyQuickly(const Clip& clip) {
    m_services.pasteboard.write(contentsForQuickCopy(clip));
}

void PasteBack::copyInDetail(const Clip& clip) {
    m_services.pasteboard.write(contentsForDetailCopy(clip));
}

qsizetype PasteBack::copyTogether(const QList<std::shared_ptr<Clip>>& clips) {
    const ContentsTogether together = contentsTogether(clips, m_services.readers.richText);
    if (together.count > 0) {
        m_services.pasteboard.write(together.contents);
    }
    return together.count;
}

std::unique_ptr<QMimeData> PasteBack::dragData(const Clip& clip) const {
    const ContentReaders& readers = m_services.readers;
    return mimeDataFor(contentsByKind(clip, readers), {readers.richText, readers.images});
}

std::unique_ptr<QMimeData> PasteBack::dragData(const QList<std::shared_ptr<Clip>>& clips) const {
    const ContentReaders& readers = m_services.readers;
    return mimeDataFor(contentsTogether(clips, readers.richText).contents,
                       {readers.richText, readers.images});
}

void PasteBack::copyTransformed(const Clip& clip, TextTransformation transformation) {
    if (const std::optional<QString> text = transformableText(clip)) {
        PasteboardContents contents;
        contents.text = TextTransformationService::shared().apply(transformation, *text);
        m_services.pasteboard.write(std::move(contents));
    }
}

void PasteBack::pasteAndTouch(const QUuid& clip, const std::optional<RunningApplication>& target) {
    const quint64 request = ++m_request;
    m_pending.reset();
    const bool isAutomatic =
        m_services.defaults.boolean(QStringLiteral("enableAutoPaste")).value_or(true);
    if (!isAutomatic || !target) {
        if (isAutomatic) {
            withhold("there is no program to paste into");
        }
        touch(clip);
        return;
    }
    m_pending = Pending{clip, *target};
    QTimer::singleShot(kPasteDelay, Qt::PreciseTimer, this,
                       [this, request] { delayIsOver(request); });
}

// The focus is asked for only now: it may have come back at once and been taken away again.
void PasteBack::delayIsOver(quint64 request) {
    if (request == m_request && m_pending) {
        m_services.workspace.whenFocused(
            m_pending->target, kFocusDeadline - kPasteDelay,
            [this, request](bool hasFocus) { focusIsKnown(request, hasFocus); });
    }
}

void PasteBack::focusIsKnown(quint64 request, bool hasFocus) {
    if (request != m_request || !m_pending) {
        return;
    }
    const Pending ready = *std::exchange(m_pending, std::nullopt);
    if (hasFocus) {
        postKeys(ready.target);
    } else {
        withhold("the program did not get the focus back");
    }
    touch(ready.clip);
}

void PasteBack::withhold(const char* reason) {
    qCWarning(lcPaste, "The clip was copied but not pasted: %s", reason);
    Q_EMIT pasteWithheld();
}

void PasteBack::postKeys(const RunningApplication& target) {
    // The posted combination may be our own shortcut, or part of it with a modifier still held.
    m_services.hotKeys.setSuspended(true);
    const Result<void> posted = m_services.keys.postPaste(keysFor(target));
    m_services.hotKeys.setSuspended(false);
    if (posted) {
        qCDebug(lcPaste, "The clip was pasted");
        Q_EMIT pasted();
    } else {
        withhold(qUtf8Printable(posted.error().text));
    }
}

void PasteBack::touch(const QUuid& clip) {
    const Clock& clock = m_services.clock;
    m_services.persistence.perform([clip, &clock](ObjectContext& context) {
        if (const std::shared_ptr<Clip> stored = context.object<Clip>(clip)) {
            stored->setCreatedAt(clock.now());
            stored->setModifiedAt(clock.now());
            // Without the new dates the clip keeps its place, which harms nobody.
            (void)context.save();
        }
    });
}

PasteKeys PasteBack::keysFor(const RunningApplication& target) const {
    const std::optional<InstalledApplication> entry =
        m_services.workspace.installedApplication(target.bundleIdentifier);
    return pasteKeysFor(target, entry ? entry->categories : QStringList());
}

}  // namespace quillo
