// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_texts.h"

using namespace Qt::StringLiterals;

namespace quillo {

QString relativeAge(Timestamp moment, Timestamp now) {
    using namespace std::chrono;
    const auto age = now - moment;
    const auto in = [&](auto unit, const QString& one, const QString& many) {
        const auto count = age / unit;
        return QString::number(count) + u' ' + (count == 1 ? one : many);
    };
    if (age < minutes(1)) {
        return u"now"_s;
    }
    if (age < hours(1)) {
        return in(minutes(1), u"min"_s, u"min"_s);
    }
    if (age < days(1)) {
        return in(hours(1), u"hr"_s, u"hr"_s);
    }
    if (age < days(14)) {
        return in(days(1), u"day"_s, u"days"_s);
    }
    if (age < days(60)) {
        return in(days(7), u"wk"_s, u"wk"_s);
    }
    return age < days(365) ? in(days(30), u"mo"_s, u"mo"_s) : in(days(365), u"yr"_s, u"yr"_s);
}

}  // namespace quillo
