// SPDX-License-Identifier: MIT
#include "whole_program/samples.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

double judgedValue(const Row& row) {
    switch (row.by) {
        case Judged::Percentile95:
            return row.samples.quantile(0.95);
        case Judged::Largest:
            return row.samples.quantile(1);
        default:
            return row.samples.quantile(0.5);
    }
}

QString word(Judged by) {
    switch (by) {
        case Judged::Percentile95:
            return u" at p95"_s;
        case Judged::Largest:
            return u" at most"_s;
        default:
            return {};
    }
}

QString number(double value) {
    return QString::number(value, 'f', value < 100 ? 2 : 0);
}

}  // namespace

double Samples::quantile(double fraction) const {
    std::vector<double> sorted = m_values;
    std::ranges::sort(sorted);
    const double rank = std::ceil(fraction * double(sorted.size())) - 1;
    return sorted.at(size_t(std::clamp(rank, 0.0, double(sorted.size() - 1))));
}

QString tableHeading() {
    return u"| what | clips | median | p95 | min–max | runs | budget | |\n"
           "| --- | ---: | ---: | ---: | ---: | ---: | ---: | --- |"_s;
}

QString tableLine(qsizetype clips, const Row& row) {
    const QString size = clips > 0 ? QLocale(QLocale::English).toString(clips) : QString();
    if (row.samples.count() == 0) {
        return u"| %1 | %2 | | | | 0 | | not measured |"_s.arg(row.what, size);
    }
    const Samples& samples = row.samples;
    const bool isJudged = row.by != Judged::Not;
    return u"| %1 | %2 | %3 %4 | %5 | %6–%7 | %8 | %9 |"_s.arg(
               row.what, size, number(samples.quantile(0.5)), row.unit,
               number(samples.quantile(0.95)), number(samples.quantile(0)),
               number(samples.quantile(1)), QString::number(samples.count()),
               isJudged ? QString::number(row.budget) + u' ' + row.unit + word(row.by)
                        : QString()) +
           (isJudged ? judgedValue(row) <= row.budget ? u" met |"_s : u" **missed** |"_s : u" |"_s);
}

}  // namespace quillo::bench
