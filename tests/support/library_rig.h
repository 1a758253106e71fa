// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>
#include <memory>

#include "library/window/library_view.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_hot_keys.h"
#include "support/fake_key_event_poster.h"
#include "support/fake_pasteboard.h"
#include "support/fake_thumbnail_service.h"
#include "support/fake_workspace.h"
#include "support/memory_user_defaults.h"

namespace quillo::testing {

/// What the library window needs besides a store, all of it fake or in memory.
struct LibraryRig {
    LibraryRig(PersistenceController::Options options, const Clock& now)
        : clock(now), persistence(std::move(options)) {}

    [[nodiscard]] std::unique_ptr<LibraryView> makeView() {
        return std::make_unique<LibraryView>(
            LibraryServices{persistence, search, pasteBack, defaults, images, documents, thumbnails,
                            workspace, clock,
                            [this](const QUrl& address) {
                                opened.append(address);
                                return true;
                            },
                            [this](const QUrl& address) { shown.append(address); },
                            [] { return QStringLiteral("Shift-Super-V"); }});
    }

    [[nodiscard]] QByteArray pasteboardText() {
        return pasteboard.paste("UTF8_STRING").value_or(RawReply{}).bytes;
    }

    const Clock& clock;
    MemoryUserDefaults defaults;
    PersistenceController persistence;
    DocumentReader documents;
    QtImageCodec images;
    FakePasteboard pasteboard{PasteboardConverters{documents, images}};
    FakeWorkspace workspace;
    FakeKeyEventPoster keys;
    FakeHotKeys hotKeys;
    FakeThumbnailService thumbnails;
    ClipSearch search{persistence, {}};
    PasteBack pasteBack{{pasteboard, workspace, keys, hotKeys, persistence, defaults,
                         ContentReaders{documents, images}, clock}};
    QList<QUrl> opened;
    QList<QUrl> shown;
};

}  // namespace quillo::testing
