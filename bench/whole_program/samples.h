// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <vector>

namespace quillo::bench {

using Moment = std::chrono::steady_clock::time_point;

[[nodiscard]] inline double millisecondsBetween(Moment from, Moment to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

/// Measured values of one row in one unit.
class Samples final {
public:
    void add(double value) { m_values.push_back(value); }
    [[nodiscard]] std::size_t count() const { return m_values.size(); }
    /// By the nearest rank; 0.5 is the median, 0 and 1 are the smallest and the largest. There
    /// must be values.
    [[nodiscard]] double quantile(double fraction) const;

private:
    std::vector<double> m_values;
};

/// What a row is judged by.
enum class Judged { Median, Percentile95, Largest, Not };

/// One line of the table.
struct Row {
    QString what;
    QString unit;
    Judged by = Judged::Median;
    double budget = 0;
    Samples samples;
};

/// The heading and one line for each row, in Markdown.
[[nodiscard]] QString tableHeading();
[[nodiscard]] QString tableLine(qsizetype clips, const Row& row);

}  // namespace quillo::bench
