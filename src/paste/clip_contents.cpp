// SPDX-License-Identifier: MIT
#include "paste/clip_contents.h"

#include <QStringConverter>
#include <QUtf8StringView>

namespace quillo {
namespace {

// Enough to tell an RTF document from anything else.
constexpr qsizetype kRtfProbeBytes = 64;

bool isRtf(const RichTextReader& reader, const QByteArray& document) {
    return reader.readRtf(document.left(kRtfProbeBytes)).has_value();
}

bool isHtml(const QByteArray& document) {
    return QUtf8StringView(document).isValidUtf8();
}

QList<QUrl> fileUrlsOf(const Clip& clip) {
    const std::optional<QString> text = clip.urlString();
    const QUrl url = text ? QUrl(*text, QUrl::StrictMode) : QUrl();
    return url.isValid() && !url.scheme().isEmpty() ? QList<QUrl>{url} : QList<QUrl>();
}

// The stored text of a page lacks the line breaks that the page has.
std::optional<QString> textAmongOthers(const Clip& clip, const RichTextReader& reader) {
    constexpr qsizetype kLongestPage = 32 * 1024;
    const std::optional<QByteArray> page =
        clip.type() == ClipType::Html ? clip.attributed() : std::nullopt;
    if (page && page->size() <= kLongestPage) {
        if (const auto rendered = reader.readHtml(*page)) {
            return rendered->text;
        }
    }
    return transformableText(clip);
}

void addPlainText(PasteboardContents& contents, const Clip& clip) {
    contents.text = clip.plaintext();
}

}  // namespace

PasteboardContents contentsByKind(const Clip& clip, const ContentReaders& readers) {
    PasteboardContents contents;
    const std::optional<ClipType> type = clip.type();
    if (type == ClipType::Image) {
        const std::optional<QByteArray> image = clip.imageData();
        if (image && readers.images.size(*image)) {
            contents.image = image;
        }
    } else if (type == ClipType::FileUrl) {
        contents.fileUrls = fileUrlsOf(clip);
    } else if (type == ClipType::Rtf || type == ClipType::Html) {
        const std::optional<QByteArray> document = clip.attributed();
        if (document && type == ClipType::Rtf && isRtf(readers.richText, *document)) {
            contents.rtf = document;
        } else if (document && type == ClipType::Html && isHtml(*document)) {
            contents.html = document;
        } else {
            addPlainText(contents, clip);
        }
    } else {
        contents.text = transformableText(clip);
    }
    return contents;
}

PasteboardContents contentsForQuickCopy(const Clip& clip) {
    PasteboardContents contents;
    contents.image = clip.imageData();
    if (!contents.image) {
        contents.text = transformableText(clip);
    }
    return contents;
}

PasteboardContents contentsForDetailCopy(const Clip& clip) {
    PasteboardContents contents;
    const std::optional<ClipType> type = clip.type();
    if (type == ClipType::Image) {
        contents.image = clip.imageData();
        return contents;
    }
    if (type == ClipType::FileUrl) {
        contents.fileUrls = fileUrlsOf(clip);
        return contents;
    }
    if (type == ClipType::Rtf) {
        contents.rtf = clip.attributed();
    } else if (type == ClipType::Html) {
        contents.html = clip.attributed();
    }
    addPlainText(contents, clip);
    return contents;
}

ContentsTogether contentsTogether(const QList<std::shared_ptr<Clip>>& clips,
                                  const RichTextReader& reader) {
    QStringList texts;
    QList<QUrl> files;
    for (const std::shared_ptr<Clip>& clip : clips) {
        if (clip->type() == ClipType::FileUrl) {
            files.append(fileUrlsOf(*clip));
        }
        if (const std::optional<QString> text = textAmongOthers(*clip, reader)) {
            texts.append(*text);
        }
    }
    ContentsTogether together;
    if (files.size() == clips.size()) {
        together.contents.fileUrls = files;
        together.count = files.size();
    } else if (!texts.isEmpty()) {
        together.contents.text = texts.join(u'\n');
        together.count = texts.size();
    }
    return together;
}

std::optional<QString> transformableText(const Clip& clip) {
    std::optional<QString> text = clip.plaintext();
    return text ? text : clip.urlString();
}

}  // namespace quillo
