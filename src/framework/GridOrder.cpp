#include "framework/GridOrder.h"

#include <QDate>
#include <QLocale>

#include <cmath>
#include <limits>
#include <optional>

namespace sysadmin {

namespace {

// Blank cells stand before every value.
constexpr double Blank = -std::numeric_limits<double>::infinity();

// The C locale compares bytes; a list for people needs an order for people there, too.
QLocale ReadingLocale() {
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : locale;
}

std::optional<double> ReadNumber(const QString& cell) {
    bool isNumber = false;
    double value = QLocale::c().toDouble(cell, &isNumber);
    if (!isNumber)
        value = QLocale().toDouble(cell, &isNumber);
    // "nan" and "inf" read as numbers; in a list they are words.
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<double> ReadDate(const QString& cell) {
    const QDate date = QLocale().toDate(cell, QLocale::ShortFormat);
    return date.isValid() ? std::optional(double(date.toJulianDay())) : std::nullopt;
}

bool IsBlank(const QString& cell) {
    return QStringView(cell).trimmed().isEmpty();
}

template <class Read>
bool AllRead(const QList<GridRow>& rows, int column, Read read) {
    bool any = false;
    for (const GridRow& row : rows) {
        const QString cell = row.cells.value(column);
        if (IsBlank(cell))
            continue;
        if (!read(cell))
            return false;
        any = true;
    }
    return any;
}

} // namespace

GridOrder::GridOrder()
    : m_collator(ReadingLocale()) {
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(true);
}

void GridOrder::Set(int column, Qt::SortOrder direction) {
    m_column = column;
    m_direction = direction;
}

void GridOrder::Build(const QList<GridRow>& rows) {
    m_values.clear();
    m_texts.clear();
    m_kind = KindOf(rows);
    if (m_kind == Kind::Number || m_kind == Kind::Date)
        m_values.reserve(rows.size());
    if (m_kind == Kind::Text)
        m_texts.reserve(rows.size());
    for (const GridRow& row : rows)
        Append(row.cells.value(m_column));
}

bool GridOrder::Update(const QList<GridRow>& rows, int place) {
    if (m_kind == Kind::None)
        return true;
    const QString cell = rows[place].cells.value(m_column);
    const bool sameKind = m_kind == Kind::Text ? rows.size() > 1 : ReadValue(cell).has_value();
    if (!sameKind) {
        Build(rows);
        return false;
    }
    if (place == Count())
        Append(cell);
    else if (m_kind == Kind::Text)
        m_texts[place] = m_collator.sortKey(cell);
    else
        m_values[place] = *ReadValue(cell);
    return true;
}

void GridOrder::Remove(int place) {
    if (m_kind == Kind::Text)
        m_texts.erase(m_texts.begin() + place);
    else if (m_kind != Kind::None)
        m_values.erase(m_values.begin() + place);
}

bool GridOrder::Before(int a, int b) const {
    const int comparison = Compare(a, b);
    if (comparison == 0)
        return a < b;
    return m_direction == Qt::AscendingOrder ? comparison < 0 : comparison > 0;
}

GridOrder::Kind GridOrder::KindOf(const QList<GridRow>& rows) const {
    if (m_column < 0)
        return Kind::None;
    if (AllRead(rows, m_column, ReadNumber))
        return Kind::Number;
    return AllRead(rows, m_column, ReadDate) ? Kind::Date : Kind::Text;
}

std::optional<double> GridOrder::ReadValue(const QString& cell) const {
    if (IsBlank(cell))
        return Blank;
    return m_kind == Kind::Number ? ReadNumber(cell) : ReadDate(cell);
}

void GridOrder::Append(const QString& cell) {
    if (m_kind == Kind::Text)
        m_texts.push_back(m_collator.sortKey(cell));
    else if (m_kind != Kind::None)
        m_values.push_back(ReadValue(cell).value_or(Blank));
}

int GridOrder::Count() const {
    return int(m_kind == Kind::Text ? m_texts.size() : m_values.size());
}

int GridOrder::Compare(int a, int b) const {
    switch (m_kind) {
    case Kind::None:
        return 0;
    case Kind::Text:
        return m_texts[a].compare(m_texts[b]);
    case Kind::Number:
    case Kind::Date:
        return m_values[a] < m_values[b] ? -1 : m_values[a] > m_values[b] ? 1 : 0;
    }
    return 0;
}

} // namespace sysadmin
