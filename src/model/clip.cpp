// SPDX-License-Identifier: MIT
#include "model/clip.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/color_text.h"
#include "model/attribute_access.h"
#include "model/clip_file_kind.h"
#include "model/filter_mask.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

struct KindDescription {
    const char* name;
    const char* color;
};

constexpr std::array<KindDescription, 5> kKinds = {{{"Text", "#4D96FF"},
                                                    {"Rich Text", "#9B59B6"},
                                                    {"HTML", "#FF8E72"},
                                                    {"Image", "#6BCB77"},
                                                    {"File", "#95A5A6"}}};

const KindDescription& kindOf(ClipType type) {
    return kKinds[size_t(std::to_underlying(type))];
}

std::optional<quint32> hexNumber(QStringView digits) {
    quint32 number = 0;
    for (const QChar digit : digits) {
        const char16_t c = digit.unicode();
        const int value = c >= u'0' && c <= u'9'   ? c - u'0'
                          : c >= u'a' && c <= u'f' ? c - u'a' + 10
                          : c >= u'A' && c <= u'F' ? c - u'A' + 10
                                                   : -1;
        if (value < 0) {
            return std::nullopt;
        }
        number = number << 4 | quint32(value);
    }
    return number;
}

int byteOf(quint32 number, int shift) {
    return int(number >> shift & 0xff);
}

}  // namespace

std::optional<ClipType> clipTypeFromRaw(qint64 raw) {
    return raw >= 0 && raw < qint64(kKinds.size()) ? std::optional(ClipType(raw)) : std::nullopt;
}

QString kindName(ClipType type) {
    return QLatin1StringView(kindOf(type).name);
}

QColor defaultColor(ClipType type) {
    return colorFromHex(QLatin1StringView(kindOf(type).color)).value_or(QColor());
}

std::shared_ptr<Clip> Clip::create(ObjectContext& context, Timestamp now) {
    auto clip = context.insert<Clip>();
    clip->setCreatedAt(now);
    clip->setModifiedAt(now);
    return clip;
}

// A saved clip's mask is never 0.
quint32 Clip::filterMask() const {
    using enum ClipAttribute;
    const qint64 stored = integerValue(*this, FilterMask);
    const auto isPending = [this](ClipAttribute attribute) {
        return isChanged(std::to_underlying(attribute));
    };
    if (stored != 0 && std::ranges::none_of(
                           std::array{Type, Plaintext, UrlString, FileUti, FileName}, isPending)) {
        return quint32(stored);
    }
    return filterMaskOf({rawType(), plaintext(), urlString(), fileUti(), fileName()});
}

QString Clip::displayText() const {
    if (const auto text = plaintext(); text.has_value() && !text->isEmpty()) {
        return *text;
    }
    if (const auto url = urlString()) {
        return *url;
    }
    if (const auto name = fileName()) {
        return *name;
    }
    return u'[' + kindName(type().value_or(ClipType::Text)) + u']';
}

std::optional<QColor> Clip::detectedColor() const {
    const auto text = plaintext();
    if (type().value_or(ClipType::Text) != ClipType::Text || !text.has_value()) {
        return std::nullopt;
    }
    return detectColor(*text);
}

QString Clip::fileKindName() const {
    const ClipType kind = type().value_or(ClipType::Text);
    return kind == ClipType::FileUrl ? quillo::fileKindName(fileUti(), fileName()) : kindName(kind);
}

QString Clip::fileTypeLabel() const {
    return quillo::fileTypeLabel(fileKindName(), fileName());
}

std::optional<QString> Clip::formattedFileSize() const {
    const auto kind = type();
    if ((kind != ClipType::FileUrl && kind != ClipType::Image) || fileSize() < 1) {
        return std::nullopt;
    }
    return formattedByteCount(fileSize());
}

std::optional<QColor> detectColor(const QString& text) {
    QStringView digits = QStringView(text).trimmed();
    if (digits.startsWith(u'#')) {
        digits = digits.mid(1);
    }
    const qsizetype count = digits.size();
    if (count != 3 && count != 6 && count != 8) {
        return std::nullopt;
    }
    const auto number = hexNumber(digits);
    if (!number.has_value()) {
        return std::nullopt;
    }
    if (count == 3) {
        return QColor(int(*number >> 8 & 15) * 17, int(*number >> 4 & 15) * 17,
                      int(*number & 15) * 17);
    }
    if (count == 6) {
        return QColor(byteOf(*number, 16), byteOf(*number, 8), byteOf(*number, 0));
    }
    return QColor(byteOf(*number, 24), byteOf(*number, 16), byteOf(*number, 8), byteOf(*number, 0));
}

}  // namespace quillo
