// SPDX-License-Identifier: MIT
#include "capture/sensitive_filter.h"

#include <unicode/regex.h>

#include <algorithm>
#include <array>
#include <memory>

namespace quillo {
namespace {

// Six digits and at most one line terminator: nothing longer needs the regular expression.
constexpr qsizetype kLongestCode = 16;

bool isOneTimeCode(const QString& text) {
    if (text.size() > kLongestCode) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<const icu::RegexPattern> pattern(
        icu::RegexPattern::compile(UNICODE_STRING_SIMPLE("^\\d{6}$"), 0, status));
    if (!pattern) {
        return false;
    }
    const icu::UnicodeString input(false, reinterpret_cast<const char16_t*>(text.utf16()),
                                   static_cast<int32_t>(text.size()));
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(input, status));
    return U_SUCCESS(status) && matcher->find();
}

}  // namespace

bool isSensitive(const QString& text) {
    if (isOneTimeCode(text) || text.startsWith(QLatin1StringView("otpauth://"))) {
        return true;
    }
    static constexpr std::array kMarkers = {
        QLatin1StringView("password="), QLatin1StringView("authorization: bearer"),
        QLatin1StringView("api_key="), QLatin1StringView("secret=")};
    const QString lowered = text.toLower();
    return std::any_of(kMarkers.begin(), kMarkers.end(),
                       [&](QLatin1StringView marker) { return lowered.contains(marker); });
}

}  // namespace quillo
