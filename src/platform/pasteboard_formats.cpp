// SPDX-License-Identifier: MIT
#include "platform/pasteboard_formats.h"

#include <QUrl>
#include <algorithm>

#include "platform/pasteboard_decoding.h"
#include "platform/pasteboard_reading.h"

using namespace Qt::StringLiterals;

namespace quillo {

namespace {

using LazyReply = Lazy<std::optional<RawReply>>;
using LazyText = Lazy<std::optional<QString>>;
using LazyDocument = Lazy<std::optional<StyledText>>;

std::shared_ptr<const LazyReply> ready(const QByteArray& type, const QByteArray& bytes) {
    auto reply = std::make_shared<const LazyReply>([=] { return RawReply{type, bytes}; });
    (void)reply->get();
    return reply;
}

RawReply utf8Reply(const QByteArray& type, const QString& text) {
    return {type, text.toUtf8()};
}

/// Latin-1 as ICCCM has it where that can hold the text, else UTF-8 under its own name.
RawReply stringReply(const QString& text) {
    const bool fits =
        std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xff; });
    return fits ? RawReply{"STRING", text.toLatin1()} : utf8Reply("UTF8_STRING", text);
}

bool offers(const PasteboardOffers& offers, const QByteArray& target) {
    return std::any_of(offers.cbegin(), offers.cend(),
                       [&](const PasteboardOffer& offer) { return offer.target == target; });
}

void add(PasteboardOffers& list, const QByteArray& target, std::shared_ptr<const LazyReply> reply) {
    if (!offers(list, target)) {
        list.append({target, std::move(reply)});
    }
}

template <typename Make>
void addLazy(PasteboardOffers& list, const QByteArray& target, Make make) {
    add(list, target, std::make_shared<const LazyReply>(std::move(make)));
}

constexpr const char* kUtf8Targets[] = {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain"};
constexpr const char* kStringTargets[] = {"STRING", "TEXT"};

void addText(PasteboardOffers& list, const std::shared_ptr<const LazyText>& text) {
    for (const char* type : kUtf8Targets) {
        addLazy(list, type, [text, type]() -> std::optional<RawReply> {
            const auto& value = text->get();
            return value ? std::optional(utf8Reply(type, *value)) : std::nullopt;
        });
    }
    for (const char* type : kStringTargets) {
        addLazy(list, type, [text]() -> std::optional<RawReply> {
            const auto& value = text->get();
            return value ? std::optional(stringReply(*value)) : std::nullopt;
        });
    }
}

std::shared_ptr<const LazyText> given(const QString& text) {
    return std::make_shared<const LazyText>([text] { return std::optional(text); });
}

std::shared_ptr<const LazyText> textOf(const std::shared_ptr<const LazyDocument>& document) {
    return std::make_shared<const LazyText>([document] {
        return document->get() ? std::optional(document->get()->text) : std::nullopt;
    });
}

std::shared_ptr<const LazyDocument> rtfDocument(const QByteArray& rtf,
                                                const RichTextReader& reader) {
    return std::make_shared<const LazyDocument>([rtf, &reader]() -> std::optional<StyledText> {
        const auto document = reader.readRtf(rtf);
        return document ? std::optional(*document) : std::nullopt;
    });
}

std::shared_ptr<const LazyDocument> htmlDocument(const QByteArray& html,
                                                 const RichTextReader& reader) {
    return std::make_shared<const LazyDocument>([html, &reader]() -> std::optional<StyledText> {
        const auto document = reader.readHtml(html);
        return document ? std::optional(*document) : std::nullopt;
    });
}

void addHtmlOf(PasteboardOffers& list, const std::shared_ptr<const LazyDocument>& document) {
    addLazy(list, "text/html", [document]() -> std::optional<RawReply> {
        const auto& value = document->get();
        return value ? std::optional(RawReply{"text/html", htmlFromStyledText(*value)})
                     : std::nullopt;
    });
}

void addPngOf(PasteboardOffers& list, const QByteArray& image, const ImageCodec& codec) {
    addLazy(list, "image/png", [image, &codec]() -> std::optional<RawReply> {
        const auto decoded = codec.decode(image);
        const auto png = decoded ? codec.encodePng(*decoded) : std::unexpected(decoded.error());
        return png ? std::optional(RawReply{"image/png", *png}) : std::nullopt;
    });
}

void addImage(PasteboardOffers& list, const QByteArray& image, const ImageCodec& codec) {
    const QByteArray type = codec.mimeType(image).toLatin1();
    if (!type.isEmpty()) {
        add(list, type, ready(type, image));
        addPngOf(list, image, codec);
    }
}

void addFiles(PasteboardOffers& list, const QList<QUrl>& files) {
    QByteArray lines;
    QByteArray copied = "copy";
    for (const QUrl& file : files) {
        const QByteArray address = file.toEncoded();
        lines += address + "\r\n";
        copied += '\n' + address;
    }
    add(list, "text/uri-list", ready("text/uri-list", lines));
    add(list, "x-special/gnome-copied-files", ready("x-special/gnome-copied-files", copied));
}

QString pathsOf(const QList<QUrl>& files) {
    QStringList paths;
    for (const QUrl& file : files) {
        paths.append(file.toLocalFile());
    }
    return paths.join(u'\n');
}

PasteboardOffers markerAlone() {
    return {{kMarkerTarget, ready(kMarkerTarget, kMarkerValue)}};
}

QList<QByteArray> targetsOf(const KeptContents& kept) {
    QList<QByteArray> targets;
    for (const KeptRepresentation& representation : kept.representations) {
        targets.append(representation.target);
    }
    return targets;
}

const RawReply* replyFor(const KeptContents& kept, const QByteArray& target) {
    for (const KeptRepresentation& representation : kept.representations) {
        if (representation.target == target) {
            return &representation.reply;
        }
    }
    return nullptr;
}

void addKeptAliases(PasteboardOffers& list, const KeptContents& kept, const ImageCodec& codec) {
    const QList<QByteArray> targets = targetsOf(kept);
    if (const auto texts = textTargetsAmong(targets); !texts.isEmpty()) {
        const QByteArray& target = texts.constFirst();
        const RawReply reply = *replyFor(kept, target);
        const TextDialect dialect = textDialectOf(targets);
        addText(list, std::make_shared<const LazyText>(
                          [=] { return std::optional(decodeText(target, reply, dialect)); }));
    }
    for (const QByteArray& target : targets) {
        if (rtfTargets().contains(target)) {
            for (const QByteArray& name : rtfTargets()) {
                add(list, name, ready(name, replyFor(kept, target)->bytes));
            }
        } else if (isImageTarget(target)) {
            addPngOf(list, replyFor(kept, target)->bytes, codec);
        }
    }
}

}  // namespace

PasteboardOffers offersFor(const PasteboardContents& contents,
                           const PasteboardConverters& converters) {
    PasteboardOffers list = markerAlone();
    std::shared_ptr<const LazyText> text = contents.text ? given(*contents.text) : nullptr;
    if (contents.rtf) {
        const auto document = rtfDocument(*contents.rtf, converters.richText);
        for (const QByteArray& name : rtfTargets()) {
            add(list, name, ready(name, *contents.rtf));
        }
        if (!contents.html) {
            addHtmlOf(list, document);
        }
        text = text ? text : textOf(document);
    }
    if (contents.html) {
        add(list, "text/html", ready("text/html", *contents.html));
        text = text ? text : textOf(htmlDocument(*contents.html, converters.richText));
    }
    if (contents.image) {
        addImage(list, *contents.image, converters.images);
    }
    if (!contents.fileUrls.isEmpty()) {
        addFiles(list, contents.fileUrls);
        text = text ? text : given(pathsOf(contents.fileUrls));
    }
    if (text) {
        addText(list, text);
    }
    return list;
}

PasteboardOffers offersForTextOf(const PasteboardContents& contents,
                                 const PasteboardConverters& converters) {
    PasteboardOffers list = offersFor(contents, converters);
    const auto isAmong = [](const auto& targets, const QByteArray& target) {
        return std::find(std::begin(targets), std::end(targets), target) != std::end(targets);
    };
    list.removeIf([&](const PasteboardOffer& offer) {
        return !isAmong(kUtf8Targets, offer.target) && !isAmong(kStringTargets, offer.target);
    });
    return list;
}

PasteboardOffers offersForKept(const KeptContents& kept, const PasteboardConverters& converters) {
    PasteboardOffers list = markerAlone();
    for (const auto& [target, reply] : kept.representations) {
        add(list, target, ready(reply.type, reply.bytes));
    }
    addKeptAliases(list, kept, converters.images);
    return list;
}

}  // namespace quillo
