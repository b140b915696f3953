#include "framework/GridOrder.h"

#include <QLocale>

#include <array>
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

bool IsBlank(const QString& cell) {
    return QStringView(cell).trimmed().isEmpty();
}

} // namespace

GridOrder::GridOrder(const QList<GridColumn>& columns)
    : m_columns(columns)
    , m_collator(ReadingLocale()) {
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(true);
}

void GridOrder::Set(int column, Qt::SortOrder direction) {
    m_column = column;
    m_direction = direction;
    m_dates.clear();
    const QString format = column < 0 ? QString() : m_columns[column].dateFormat;
    if (format.isEmpty())
        for (const QString& form : {QLocale().dateFormat(QLocale::ShortFormat), DateForm()})
            m_dates.emplace_back(form);
    else
        m_dates.emplace_back(format);
}

void GridOrder::Build(const QList<GridRow>& rows) {
    m_values.clear();
    m_texts.clear();
    m_kind = Kind::None;
    if (m_column < 0)
        return;
    // Dates may be all digits ("20261121"); where a column is said to hold them they are looked for first.
    const bool datesFirst = !m_columns[m_column].dateFormat.isEmpty();
    for (const Kind kind :
         datesFirst ? std::array{Kind::Date, Kind::Number} : std::array{Kind::Number, Kind::Date})
        if (ReadAll(rows, kind))
            return;
    m_kind = Kind::Text;
    m_values.clear();
    m_texts.reserve(size_t(rows.size()));
    for (const GridRow& row : rows)
        m_texts.push_back(m_collator.sortKey(TextOf(row)));
}

/// Reads the values of a column of this kind; false as soon as one is of another kind, and when all are
/// blank.
bool GridOrder::ReadAll(const QList<GridRow>& rows, Kind kind) {
    m_kind = kind;
    m_values.clear();
    m_values.reserve(size_t(rows.size()));
    bool any = false;
    for (const GridRow& row : rows) {
        const std::optional<double> value = ReadValue(row.cells.value(m_column));
        if (!value)
            return false;
        any = any || *value != Blank;
        m_values.push_back(*value);
    }
    return any;
}

QString GridOrder::TextOf(const GridRow& row) const {
    return ShownText(m_columns[m_column], row.cells.value(m_column));
}

/// Whether the column stays of its kind with this cell.
bool GridOrder::TellsKind(const QString& cell) const {
    return m_kind == Kind::Text ? Count() > 0 : ReadValue(cell).has_value();
}

bool GridOrder::Update(const QList<GridRow>& rows, int place) {
    if (m_kind == Kind::None)
        return true;
    if (place == Count())
        return Insert(rows, place);
    const QString cell = rows[place].cells.value(m_column);
    if (!TellsKind(cell) || rows.size() == 1) {
        Build(rows);
        return false;
    }
    if (m_kind == Kind::Text)
        m_texts[size_t(place)] = m_collator.sortKey(TextOf(rows[place]));
    else
        m_values[size_t(place)] = *ReadValue(cell);
    return true;
}

bool GridOrder::Insert(const QList<GridRow>& rows, int place) {
    if (m_kind == Kind::None)
        return true;
    const QString cell = rows[place].cells.value(m_column);
    if (!TellsKind(cell)) {
        Build(rows);
        return false;
    }
    if (m_kind == Kind::Text)
        m_texts.insert(m_texts.begin() + place, m_collator.sortKey(TextOf(rows[place])));
    else
        m_values.insert(m_values.begin() + place, *ReadValue(cell));
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

std::optional<double> GridOrder::ReadValue(const QString& cell) const {
    if (!m_columns[m_column].items.isEmpty()) // ids, which nobody sees
        return std::nullopt;
    if (IsBlank(cell))
        return Blank;
    if (m_kind == Kind::Number)
        return ReadNumber(cell);
    for (const MomentReader& dates : m_dates)
        if (const auto value = dates.Read(cell))
            return value;
    return std::nullopt;
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
