// SPDX-License-Identifier: MIT
#include "model/filter_mask.h"

#include <algorithm>

#include "model/clip.h"
#include "model/clip_file_kind.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using enum FilterType;

struct KindFilter {
    const char* kindName;
    FilterType filter;
};

constexpr KindFilter kKindFilters[] = {
    {"PDF", Pdf},         {"Word", Word},     {"Pages", Word},
    {"Excel", Excel},     {"Numbers", Excel}, {"PowerPoint", Powerpoint},
    {"CSV", Csv},         {"TSV", Csv},       {"Keynote", Powerpoint},
    {"Archive", Archive}, {"Audio", Audio},   {"Video", Video},
};

// The first of these that a clip matches describes it best.
constexpr FilterType kBestFirst[] = {Link,  Color,      Folder,   Pdf,     Word,
                                     Excel, Powerpoint, Csv,      Archive, Audio,
                                     Video, AllFiles,   RichText, Html,    Image};

quint32 maskOfText(const FilterInputs& inputs) {
    const bool isLink = inputs.urlString.has_value() && !inputs.urlString->isEmpty();
    const bool isColor = inputs.plaintext.has_value() && detectColor(*inputs.plaintext).has_value();
    const quint32 mask = (isLink ? filterBit(Link) : 0) | (isColor ? filterBit(Color) : 0);
    return mask != 0 ? mask : filterBit(Text);
}

// A folder is told by the identifier as it is stored; a kind's name disregards its case.
quint32 maskOfFile(const FilterInputs& inputs) {
    quint32 mask = filterBit(AllFiles);
    const QString identifier = inputs.fileUti.value_or(QString());
    if (identifier.contains("folder"_L1) || identifier.contains("directory"_L1)) {
        mask |= filterBit(Folder);
    }
    const QString name = fileKindName(inputs.fileUti, inputs.fileName);
    for (const KindFilter& row : kKindFilters) {
        mask |= name == QLatin1StringView(row.kindName) ? filterBit(row.filter) : 0;
    }
    return mask;
}

}  // namespace

quint32 filterMaskOf(const FilterInputs& inputs) {
    switch (clipTypeFromRaw(inputs.rawType).value_or(ClipType::Text)) {
        case ClipType::Text:
            return maskOfText(inputs);
        case ClipType::Rtf:
            return filterBit(RichText);
        case ClipType::Html:
            return filterBit(Html);
        case ClipType::Image:
            return filterBit(Image);
        case ClipType::FileUrl:
            return maskOfFile(inputs);
    }
    return filterBit(Text);
}

FilterType filterTypeOfMask(quint32 mask) {
    const auto best = std::ranges::find_if(
        kBestFirst, [mask](FilterType filter) { return (mask & filterBit(filter)) != 0; });
    return best == std::end(kBestFirst) ? Text : *best;
}

}  // namespace quillo
