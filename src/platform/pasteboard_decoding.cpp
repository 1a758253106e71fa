// SPDX-License-Identifier: MIT
#include "platform/pasteboard_decoding.h"

#include <QSet>
#include <QStringDecoder>
#include <algorithm>

#include <unicode/ucnv.h>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qsizetype kLongestCharset = 40;
constexpr qsizetype kCharsetSearch = 1024;

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

/// The text with a replacement character for each half of a surrogate pair that stands alone.
QString wellFormed(const QString& text) {
    if (text.isValidUtf16()) {
        return text;
    }
    const QList<uint> points = text.toUcs4();
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(points.constData()), points.size());
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
    return trimmed.isValidUtf8() ? QString::fromUtf8(trimmed) : QString::fromLatin1(trimmed);
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

}  // namespace

QString decodeUtf16(const QByteArray& bytes) {
    const bool isBig = bytes.startsWith("\xfe\xff") ||
                       (!hasUtf16Mark(bytes) && bytes.size() >= 2 && bytes.at(0) == '\0');
    QStringDecoder decoder(isBig ? QStringDecoder::Utf16BE : QStringDecoder::Utf16LE);
    const QString text = decoder.decode(bytes.first(bytes.size() / 2 * 2));
    return wellFormed(withoutTrailingNuls(text));
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
    return wellFormed(text);
}

QByteArray decodeHtml(const QByteArray& bytes) {
    QByteArray trimmed = withoutTrailingNuls(bytes);
    if (hasUtf16Mark(bytes) || looksLikeUtf16(trimmed)) {
        return decodeUtf16(bytes).toUtf8();
    }
    if (trimmed.startsWith("\xef\xbb\xbf")) {
        trimmed.remove(0, 3);
    }
    if (trimmed.isValidUtf8()) {
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

}  // namespace quillo
