// SPDX-License-Identifier: MIT
#include "model/clip_file_kind.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <span>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

struct NamedPieces {
    const char* name;
    std::initializer_list<const char*> pieces;
};

// Tested in this order; the first row with a piece inside the identifier wins.
const NamedPieces kIdentifierRules[] = {
    {"Folder", {"folder", "directory"}},
    {"PDF", {"pdf"}},
    {"Excel", {"spreadsheet", "excel"}},
    {"Word", {"wordprocessingml", "word"}},
    {"PowerPoint", {"presentation", "powerpoint"}},
    {"CSV", {"comma-separated"}},
    {"TSV", {"tab-separated"}},
    {"Archive", {"zip", "archive", "compressed"}},
    {"JSON", {"json"}},
    {"XML", {"xml"}},
    {"YAML", {"yaml"}},
    {"Text", {"plain-text"}},
    {"Code", {"source-code", "script"}},
    {"Audio", {"audio"}},
    {"Video", {"movie", "video"}},
    {"Image", {"image"}},
    {"Font", {"font"}},
    {"Database", {"database", "sqlite"}},
};

const NamedPieces kExtensions[] = {
    {"PDF", {"pdf"}},
    {"Word", {"doc", "docx"}},
    {"Excel", {"xls", "xlsx"}},
    {"PowerPoint", {"ppt", "pptx"}},
    {"CSV", {"csv"}},
    {"TSV", {"tsv"}},
    {"JSON", {"json"}},
    {"XML", {"xml"}},
    {"YAML", {"yaml", "yml"}},
    {"Text", {"txt", "rtf"}},
    {"Markdown", {"md"}},
    {"Archive", {"zip", "tar", "gz", "rar", "7z", "dmg"}},
    {"Audio", {"mp3", "wav", "aac", "flac", "m4a", "ogg"}},
    {"Video", {"mp4", "mov", "avi", "mkv", "wmv", "webm"}},
    {"Image", {"png", "jpg", "jpeg", "gif", "webp", "heic", "tiff", "svg"}},
    {"Code", {"swift", "py", "js", "ts", "java", "c", "cpp", "h", "go", "rs", "rb"}},
    {"HTML", {"html", "htm"}},
    {"CSS", {"css"}},
    {"Script", {"sh", "bash", "zsh"}},
    {"Database", {"sql", "sqlite", "db"}},
    {"Font", {"ttf", "otf", "woff", "woff2"}},
    {"Pages", {"pages"}},
    {"Numbers", {"numbers"}},
    {"Keynote", {"key"}},
    {"Sketch", {"sketch"}},
    {"Figma", {"fig"}},
    {"Photoshop", {"psd"}},
    {"Illustrator", {"ai"}},
    {"App", {"app"}},
};

// These say it all: the extension would only repeat them.
constexpr const char* kNamesThatStandAlone[] = {
    "PDF",     "CSV",     "TSV",    "JSON",  "XML",       "CSS",         "Folder", "Pages",
    "Numbers", "Keynote", "Sketch", "Figma", "Photoshop", "Illustrator", "App"};

template <typename Matches>
QString firstMatch(std::span<const NamedPieces> table, Matches matches) {
    for (const NamedPieces& row : table) {
        for (const char* piece : row.pieces) {
            if (matches(QLatin1StringView(piece))) {
                return QLatin1StringView(row.name);
            }
        }
    }
    return {};
}

// The last piece between dots in lower case; the whole name when there is no dot.
QString lastPiece(const std::optional<QString>& fileName) {
    const QStringList pieces = fileName.value_or(QString()).split(u'.', Qt::SkipEmptyParts);
    return pieces.isEmpty() ? QString() : pieces.last().toLower();
}

QString withUnit(double amount, int decimals, QLatin1StringView unit) {
    QString number = QString::number(amount, 'f', decimals);
    while (decimals > 0 && (number.endsWith(u'0') || number.endsWith(u'.'))) {
        const bool wasPoint = number.endsWith(u'.');
        number.chop(1);
        if (wasPoint) {
            break;
        }
    }
    return number + u' ' + unit;
}

}  // namespace

QString fileKindName(const std::optional<QString>& typeIdentifier,
                     const std::optional<QString>& fileName) {
    if (typeIdentifier.has_value()) {
        const QString identifier = typeIdentifier->toLower();
        const QString name = firstMatch(
            kIdentifierRules, [&](QLatin1StringView piece) { return identifier.contains(piece); });
        if (!name.isEmpty()) {
            return name;
        }
    }
    const QString extension = lastPiece(fileName);
    const QString name =
        firstMatch(kExtensions, [&](QLatin1StringView piece) { return extension == piece; });
    return name.isEmpty() ? u"File"_s : name;
}

QString fileTypeLabel(const QString& kindName, const std::optional<QString>& fileName) {
    const bool standsAlone = std::ranges::any_of(kNamesThatStandAlone, [&](const char* name) {
        return kindName == QLatin1StringView(name);
    });
    const QString extension = lastPiece(fileName);
    return standsAlone || extension.isEmpty() ? kindName : kindName + u" ."_s + extension;
}

QString formattedByteCount(qint64 bytes) {
    struct Unit {
        const char* name;
        int decimals;
    };
    static constexpr Unit kUnits[] = {{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}};
    constexpr double kStep = 1000;
    if (bytes < qint64(kStep)) {
        return bytes == 1 ? u"1 byte"_s : u"%1 bytes"_s.arg(bytes);
    }
    double amount = double(bytes);
    for (const Unit& unit : kUnits) {
        amount /= kStep;
        const double scale = std::pow(10.0, unit.decimals);
        const double rounded = std::round(amount * scale) / scale;
        if (rounded < kStep) {
            return withUnit(rounded, unit.decimals, QLatin1StringView(unit.name));
        }
    }
    return withUnit(amount / kStep, 2, "EB"_L1);
}

}  // namespace quillo
