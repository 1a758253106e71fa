// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quillo {

class FormLabel;

/// A dot and a word that say whether something works: green for yes, grey for no.
class StatusLabel final : public QWidget {
    Q_OBJECT

public:
    explicit StatusLabel(QWidget* parent = nullptr);

    void setStatus(const QString& text, bool isGood);
    [[nodiscard]] QString text() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    FormLabel* m_text;
    bool m_isGood = false;
};

}  // namespace quillo
