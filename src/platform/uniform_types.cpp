// SPDX-License-Identifier: MIT
#include "platform/uniform_types.h"

#include <QHash>
#include <QMimeDatabase>
#include <algorithm>

#include "platform/uniform_type_table.h"

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestExtension = 64;
constexpr QLatin1StringView kDerivedPrefix{"public."};

// Kinds of files are told by words in the identifier, so a type of something else than a picture
// ("disk image") must not carry the word that says picture.
constexpr QLatin1StringView kPictureWord{"image"};
constexpr QLatin1StringView kPictureWordElsewhere{"img"};

const KnownType* knownTypeForExtension(const QString& extension) {
    static const QHash<QString, const KnownType*> byExtension = [] {
        QHash<QString, const KnownType*> result;
        for (const KnownType& type : type_table::kRows) {
            result.insert(QString(type.extension), &type);
        }
        return result;
    }();
    return byExtension.value(extension, nullptr);
}

QString identifierForMimeName(const QString& mimeName, bool isImage) {
    QString name = mimeName;
    name.replace(u'/', u'.');
    if (!isImage) {
        name.replace(kPictureWord, kPictureWordElsewhere);
    }
    return kDerivedPrefix + name;
}

QString mimeNameFromIdentifier(const QString& identifier) {
    const QMimeDatabase database;
    QString name = identifier.sliced(kDerivedPrefix.size());
    const qsizetype separator = name.indexOf(u'.');
    if (separator < 0) {
        return {};
    }
    name[separator] = u'/';
    if (database.mimeTypeForName(name).isValid()) {
        return name;
    }
    name.replace(kPictureWordElsewhere, kPictureWord);
    return database.mimeTypeForName(name).isValid() ? name : QString();
}

}  // namespace

std::optional<UniformType> uniformTypeForExtension(const QString& extension) {
    // The MIME database walks its tree of suffixes beyond its end at a NUL.
    const bool isPossible = !extension.contains(u'/') && !extension.contains(QChar(u'\0'));
    if (extension.isEmpty() || extension.size() > kLongestExtension || !isPossible) {
        return std::nullopt;
    }
    const QString lowered = extension.toLower();
    if (const KnownType* known = knownTypeForExtension(lowered)) {
        return UniformType{QString(known->identifier), known->mimeType.startsWith("image/"_L1)};
    }
    const QList<QMimeType> types = QMimeDatabase().mimeTypesForFileName(u"x."_s + lowered);
    if (types.isEmpty() || types.constFirst().isDefault()) {
        return std::nullopt;
    }
    const QString mimeName = types.constFirst().name();
    const bool isImage = mimeName.startsWith("image/"_L1);
    return UniformType{identifierForMimeName(mimeName, isImage), isImage};
}

QString mimeTypeForUniformType(const QString& identifier) {
    if (identifier == kFolderType) {
        return u"inode/directory"_s;
    }
    if (identifier == kDataType) {
        return u"application/octet-stream"_s;
    }
    const auto known = std::ranges::find(type_table::kRows, identifier, &KnownType::identifier);
    if (known != std::ranges::end(type_table::kRows)) {
        return QString(known->mimeType);
    }
    return identifier.startsWith(kDerivedPrefix) ? mimeNameFromIdentifier(identifier) : QString();
}

}  // namespace quillo
