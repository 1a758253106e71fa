// SPDX-License-Identifier: MIT
#include "library/list/clip_list_model.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qsizetype kRowsAtOnce = 40;
constexpr qsizetype kMostRows = 2000;
constexpr qsizetype kLongestText = 400;

ClipRow rowOf(const Clip& clip) {
    return {.kind = clip.type(),
            .text = clip.displayText().left(kLongestText).simplified(),
            .createdAt = clip.createdAt()};
}

QString counted(qint64 count, const char* one, const char* many) {
    return u"%1 %2 ago"_s.arg(count).arg(QLatin1StringView(count == 1 ? one : many));
}

}  // namespace

ClipListModel::ClipListModel(PersistenceController& persistence, const Clock& clock,
                             QObject* parent)
    : QAbstractListModel(parent),
      m_clock(clock),
      m_rows(persistence.viewContext(), kMostRows, &rowOf) {
    connect(&persistence.viewContext(), &ObjectContext::changed, this,
            &ClipListModel::storeChanged);
}

void ClipListModel::setIds(const QList<QUuid>& ids) {
    beginResetModel();
    m_ids = ids;
    endResetModel();
}

int ClipListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_ids.size());
}

// Whoever looks at a row soon looks at those around it.
ClipRow ClipListModel::row(int index) const {
    const QUuid id = m_ids.value(index);
    if (m_rows.row(id) == nullptr) {
        m_rows.load(m_ids, index - kRowsAtOnce / 2, index + kRowsAtOnce / 2);
    }
    const ClipRow* known = m_rows.row(id);
    return known != nullptr ? *known : ClipRow();
}

QString ClipListModel::age(int index) const {
    return relativeTime(row(index).createdAt, m_clock.now());
}

QVariant ClipListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return row(index.row()).text;
    }
    if (role == Qt::AccessibleTextRole) {
        const ClipRow shown = row(index.row());
        const QString kind = kindName(shown.kind.value_or(ClipType::Text));
        return u"%1: %2, %3"_s.arg(kind, shown.text, age(index.row()));
    }
    return {};
}

void ClipListModel::storeChanged(const ChangeSet& changes) {
    m_rows.forget(changes);
    const bool mayShowChange = changes.everything || !changes.updated.isEmpty();
    if (mayShowChange && !m_ids.isEmpty()) {
        Q_EMIT dataChanged(index(0), index(int(m_ids.size()) - 1));
    }
}

QString relativeTime(std::optional<Timestamp> moment, Timestamp now) {
    using namespace std::chrono;
    if (!moment) {
        return u"Unknown"_s;
    }
    const auto age = now - *moment;
    if (age < minutes(1)) {
        return u"now"_s;
    }
    if (age < hours(1)) {
        return counted(duration_cast<minutes>(age).count(), "min", "min");
    }
    if (age < days(1)) {
        return counted(duration_cast<hours>(age).count(), "hr", "hr");
    }
    if (age < weeks(1)) {
        return counted(duration_cast<days>(age).count(), "day", "days");
    }
    if (age < months(1)) {
        return counted(duration_cast<weeks>(age).count(), "wk", "wk");
    }
    if (age < years(1)) {
        return counted(duration_cast<months>(age).count(), "mo", "mo");
    }
    return counted(duration_cast<years>(age).count(), "yr", "yr");
}

QString kindSymbol(std::optional<ClipType> kind) {
    switch (kind.value_or(ClipType::Text)) {
        case ClipType::Text:
            return u"doc.text"_s;
        case ClipType::Rtf:
            return u"doc.richtext"_s;
        case ClipType::Html:
            return u"globe"_s;
        case ClipType::Image:
            return u"photo"_s;
        case ClipType::FileUrl:
            return u"doc"_s;
    }
    return u"doc.text"_s;
}

}  // namespace quillo
