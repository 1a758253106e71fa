// SPDX-License-Identifier: MIT
#include "platform/pasteboard_formats.h"

#include <QSet>
#include <QStringDecoder>
#include <QUrl>
#include <algorithm>

#include <unicode/ucnv.h>

#include "platform/pasteboard_reading.h"

using namespace Qt::StringLiterals;

namespace quillo {

namespace {

using LazyReply = Lazy<std::optional<RawReply>>;
using LazyText = Lazy<std::optional<QString>>;
using LazyDocument = Lazy<std::optional<StyledText>>;

constexpr qsizetype kLongestCharset = 40;
constexpr qsizetype kCharsetSearch = 1024;

// ---- decoding

QByteArray withoutTrailingNuls(QByteArray bytes) {
    while (bytes.endsWith('\0')) {
        bytes.chop(1);
    }
    return bytes;
}

QString withoutTrailingNuls(QString text) {
    while (text.endsWith(QChar(u'\0'))) {
        text.chop(1);
    }
    return text;
}

bool isUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    [[maybe_unused]] const QString text = decoder.decode(bytes);
    return !decoder.hasError();
}

/// The value of the charset parameter of a MIME type or of a document, in lower case.
QByteArray charsetIn(const QByteArray& text) {
    const QByteArray lower = text.toLower();
    const qsizetype at = lower.indexOf("charset=");
    if (at < 0) {
        return {};
    }
    QByteArray value = lower.mid(at + 8, kLongestCharset + 2);
    if (value.startsWith('"') || value.startsWith('\'')) {
        value.remove(0, 1);
    }
    const auto end = std::find_if(value.cbegin(), value.cend(), [](char c) {
        return !(std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == '.');
    });
    value.truncate(std::distance(value.cbegin(), end));
    return value;
}

std::optional<QString> viaConverter(const QByteArray& charset, const QByteArray& bytes) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUConverterPointer converter(ucnv_open(charset.constData(), &status));
    if (U_FAILURE(status) || bytes.size() > INT32_MAX / 4) {
        return std::nullopt;
    }
    const auto size = static_cast<int32_t>(bytes.size());
    const int32_t length =
        ucnv_toUChars(converter.getAlias(), nullptr, 0, bytes.constData(), size, &status);
    QString text(length, Qt::Uninitialized);
    status = U_ZERO_ERROR;
    ucnv_toUChars(converter.getAlias(), reinterpret_cast<UChar*>(text.data()), length,
                  bytes.constData(), size, &status);
    return U_SUCCESS(status) ? std::optional(text) : std::nullopt;
}

bool hasUtf16Mark(const QByteArray& bytes) {
    return bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
}

/// True when nearly every second byte is NUL, which no text in an 8-bit charset has.
bool looksLikeUtf16(const QByteArray& bytes) {
    const QByteArray head = bytes.first(std::min<qsizetype>(bytes.size(), 512));
    return head.size() >= 4 && head.count('\0') * 3 >= head.size();
}

QString decodeUnnamed(const QByteArray& bytes) {
    if (hasUtf16Mark(bytes) || looksLikeUtf16(withoutTrailingNuls(bytes))) {
        return decodeUtf16(bytes);
    }
    const QByteArray trimmed = withoutTrailingNuls(bytes);
    return isUtf8(trimmed) ? QString::fromUtf8(trimmed) : QString::fromLatin1(trimmed);
}

QString decodeNamed(const QByteArray& charset, const QByteArray& bytes) {
    if (charset == "utf-8" || charset == "utf8") {
        return QString::fromUtf8(withoutTrailingNuls(bytes));
    }
    if (charset == "utf-16" || charset == "utf-16le" || charset == "iso-10646-ucs-2") {
        return decodeUtf16(bytes);
    }
    if (const auto text = viaConverter(charset, bytes)) {
        return withoutTrailingNuls(*text);
    }
    return decodeUnnamed(bytes);
}

/// Text of a double-byte set in its seven-bit form, by way of the eight-bit one.
QString decodeDoubleByte(const QByteArray& charset, QByteArray bytes) {
    for (char& byte : bytes) {
        byte = byte > ' ' ? static_cast<char>(byte | 0x80) : byte;
    }
    return viaConverter(charset, bytes).value_or(QString::fromLatin1(bytes));
}

/// Compound Text (X Consortium Standard) as far as programs still write it: Latin-1, UTF-8 and
/// the three East Asian sets, switched by escape sequences. ICU's converter reads less of it.
QString decodeCompoundText(const QByteArray& bytes) {
    const QByteArrayList segments = bytes.split('\x1b');
    QString text = QString::fromLatin1(segments.constFirst());
    for (const QByteArray& segment : segments.sliced(1)) {
        const QByteArray wide = segment.startsWith("$(") ? segment.left(3) : QByteArray();
        if (segment.startsWith("%G")) {
            text += QString::fromUtf8(segment.sliced(2));
        } else if (wide == "$(A" || wide == "$(B" || wide == "$(C") {
            const char* const charset = wide == "$(A"   ? "EUC-CN"
                                        : wide == "$(B" ? "EUC-JP"
                                                        : "EUC-KR";
            text += decodeDoubleByte(charset, segment.sliced(3));
        } else {
            text += QString::fromLatin1(segment.mid(2));
        }
    }
    return withoutTrailingNuls(text);
}

/// Turns \uXXXX and \UXXXXXXXX into the characters they stand for. Escapes of ASCII characters
/// stay: the programs concerned never write those.
QString unescaped(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QStringView rest = QStringView(text).mid(i);
        const qsizetype digits = rest.startsWith("\\u"_L1) ? 4 : rest.startsWith("\\U"_L1) ? 8 : 0;
        bool isNumber = false;
        const char32_t code =
            digits > 0 && rest.size() >= 2 + digits ? rest.mid(2, digits).toUInt(&isNumber, 16) : 0;
        if (isNumber && code > 0x7f && code <= 0x10ffff) {
            result += QString::fromUcs4(&code, 1);
            i += 1 + digits;
        } else {
            result += text.at(i);
        }
    }
    return result;
}

QByteArray baseName(const QByteArray& type) {
    return type.split(';').constFirst().trimmed();
}

// ---- offering

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

void addFile(PasteboardOffers& list, const QUrl& url) {
    const QByteArray address = url.toEncoded();
    add(list, "text/uri-list", ready("text/uri-list", address + "\r\n"));
    add(list, "x-special/gnome-copied-files",
        ready("x-special/gnome-copied-files", "copy\n" + address));
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
        const QByteArray target = texts.constFirst();
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

QString decodeUtf16(const QByteArray& bytes) {
    const bool isBig = bytes.startsWith("\xfe\xff") ||
                       (!hasUtf16Mark(bytes) && bytes.size() >= 2 && bytes.at(0) == '\0');
    QStringDecoder decoder(isBig ? QStringDecoder::Utf16BE : QStringDecoder::Utf16LE);
    const QString text = decoder.decode(bytes.first(bytes.size() / 2 * 2));
    return withoutTrailingNuls(text);
}

QString decodeText(const QByteArray& target, const RawReply& reply, TextDialect dialect) {
    const QByteArray type = baseName(reply.type);
    if (type == "UTF8_STRING") {
        return QString::fromUtf8(withoutTrailingNuls(reply.bytes));
    }
    if (type == "COMPOUND_TEXT") {
        return decodeCompoundText(reply.bytes);
    }
    QByteArray charset = charsetIn(reply.type);
    if (charset.isEmpty() && type != "STRING") {
        charset = charsetIn(target);
    }
    QString text =
        charset.isEmpty() ? decodeUnnamed(reply.bytes) : decodeNamed(charset, reply.bytes);
    if (dialect == TextDialect::Escaped) {
        if (charset.isEmpty()) {
            text = unescaped(text);
        }
        if (type != "STRING") {
            text.replace("\r\n"_L1, "\n"_L1);
        }
    }
    return text;
}

QByteArray decodeHtml(const QByteArray& bytes) {
    QByteArray trimmed = withoutTrailingNuls(bytes);
    if (hasUtf16Mark(bytes) || looksLikeUtf16(trimmed)) {
        return decodeUtf16(bytes).toUtf8();
    }
    if (trimmed.startsWith("\xef\xbb\xbf")) {
        trimmed.remove(0, 3);
    }
    if (isUtf8(trimmed)) {
        return trimmed;
    }
    const QByteArray charset = charsetIn(trimmed.left(kCharsetSearch));
    const auto text = viaConverter(charset.isEmpty() ? "windows-1252" : charset, trimmed);
    return text ? text->toUtf8() : QString::fromUtf8(trimmed).toUtf8();
}

TextDialect textDialectOf(const QList<QByteArray>& offered) {
    return offered.contains("COMPOUND_TEXT") && offered.contains("text/plain;charset=utf-8")
               ? TextDialect::Escaped
               : TextDialect::Plain;
}

QList<QByteArray> textTargetsAmong(const QList<QByteArray>& offered) {
    constexpr int kRanks = 7;
    const auto rank = [](const QByteArray& target) {
        if (target == "UTF8_STRING") {
            return 0;
        }
        if (baseName(target).toLower() == "text/plain") {
            const QByteArray charset = charsetIn(target);
            return charset == "utf-8" ? 1 : !charset.isEmpty() ? 2 : 3;
        }
        return target == "STRING"          ? 4
               : target == "TEXT"          ? 5
               : target == "COMPOUND_TEXT" ? 6
                                           : kRanks;
    };
    QList<QByteArray> found;
    for (int wanted = 0; wanted < kRanks; ++wanted) {
        std::copy_if(offered.cbegin(), offered.cend(), std::back_inserter(found),
                     [&](const QByteArray& target) { return rank(target) == wanted; });
    }
    return found;
}

const QList<QByteArray>& rtfTargets() {
    static const QList<QByteArray> targets{"text/rtf", "application/rtf", "text/richtext"};
    return targets;
}

bool isImageTarget(const QByteArray& target) {
    static const QSet<QByteArray> others{"text/ico", "application/ico", "application/bmp"};
    static const QList<QByteArray> shapes{"svg", "wmf", "emf", "x-xfig", "cgm"};
    const QByteArray name = baseName(target).toLower();
    if (others.contains(name)) {
        return true;
    }
    return name.startsWith("image/") &&
           std::none_of(shapes.cbegin(), shapes.cend(),
                        [&](const QByteArray& shape) { return name.contains(shape); });
}

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
    if (contents.fileUrl) {
        addFile(list, *contents.fileUrl);
        text = text ? text : given(contents.fileUrl->toLocalFile());
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
