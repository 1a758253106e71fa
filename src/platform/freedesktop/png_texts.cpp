// SPDX-License-Identifier: MIT
#include "platform/freedesktop/png_texts.h"

#include <QtEndian>

namespace quillo {
namespace {

constexpr char kSignature[] = "\x89PNG\r\n\x1a\n";
constexpr qsizetype kSignatureSize = 8;
constexpr qsizetype kChunkFrame = 12;  // Length, type and checksum.
constexpr qsizetype kLongestChunk = 8 * 1024;
// A picture of any program has a handful.
constexpr int kMostTexts = 32;
constexpr qsizetype kLongestText = 64 * 1024;

// A deflated chunk of the size allowed above cannot grow beyond 8 MiB.
QByteArray inflated(const QByteArray& deflated) {
    constexpr quint32 kExpected = 1024;
    QByteArray framed(sizeof(quint32), Qt::Uninitialized);
    qToBigEndian(kExpected, framed.data());
    return qUncompress(framed + deflated);
}

void addText(const QByteArray& type, const QByteArray& data, QHash<QByteArray, QByteArray>& texts) {
    const qsizetype end = data.indexOf('\0');
    if (end <= 0) {
        return;
    }
    const QByteArray keyword = data.left(end);
    if (type == "tEXt") {
        texts.insert(keyword, data.mid(end + 1));
    } else if (type == "zTXt" && data.size() > end + 2 && data.at(end + 1) == 0) {
        if (const QByteArray text = inflated(data.mid(end + 2)); text.size() <= kLongestText) {
            texts.insert(keyword, text);
        }
    }
}

}  // namespace

QHash<QByteArray, QByteArray> pngTexts(const QByteArray& file) {
    QHash<QByteArray, QByteArray> texts;
    if (!file.startsWith(kSignature)) {
        return texts;
    }
    qsizetype at = kSignatureSize;
    int textsLeft = kMostTexts;
    while (textsLeft > 0 && file.size() - at >= kChunkFrame) {
        const quint32 length = qFromBigEndian<quint32>(file.constData() + at);
        if (qsizetype(length) > file.size() - at - kChunkFrame) {
            break;
        }
        const QByteArray type = file.mid(at + 4, 4);
        if (qsizetype(length) <= kLongestChunk && (type == "tEXt" || type == "zTXt")) {
            addText(type, file.mid(at + 8, length), texts);
            --textsLeft;
        }
        at += kChunkFrame + length;
    }
    return texts;
}

}  // namespace quillo
