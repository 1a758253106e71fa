// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "model/filter_type.h"

namespace quillo {

class ToggleSwitch;

/// One filter of FilterList: a handle, the filter's symbol and name, and its switch.
class FilterRow final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 38;

    explicit FilterRow(FilterType filter, QWidget* parent);

    [[nodiscard]] FilterType filter() const { return m_filter; }
    /// The row's only stop of the keyboard; says for screen readers where the row stands.
    [[nodiscard]] ToggleSwitch& toggle() { return *m_toggle; }
    void setPlace(qsizetype index, qsizetype count);
    /// Taken up by the pointer: drawn as lying above the others.
    void setLifted(bool isLifted);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    FilterType m_filter;
    ToggleSwitch* m_toggle;
    bool m_isLifted = false;
};

}  // namespace quillo
