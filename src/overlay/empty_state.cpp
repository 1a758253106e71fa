// SPDX-License-Identifier: MIT
#include "overlay/empty_state.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QString titleFor(const QString& searchText, std::optional<FilterType> typeFilter,
                 const std::optional<QString>& groupTitle) {
    const QString group = groupTitle && !groupTitle->isEmpty() ? *groupTitle : u"group"_s;
    if (!searchText.isEmpty()) {
        return u"No matching clips"_s;
    }
    if (groupTitle && typeFilter) {
        return u"No "_s + label(*typeFilter) + u" clips in "_s + group;
    }
    if (groupTitle) {
        return u"No clips in "_s + group;
    }
    return typeFilter ? u"No "_s + label(*typeFilter) + u" clips"_s : u"No clips yet"_s;
}

}  // namespace

EmptyState emptyStateFor(const QString& searchText, std::optional<FilterType> typeFilter,
                         const std::optional<QString>& groupTitle) {
    const QString symbol = typeFilter   ? icon(*typeFilter)
                           : groupTitle ? u"folder"_s
                                        : u"doc.on.clipboard"_s;
    return {symbol, titleFor(searchText, typeFilter, groupTitle),
            searchText.isEmpty() ? u"Copy something to get started"_s
                                 : u"Try a different search term"_s};
}

}  // namespace quillo
