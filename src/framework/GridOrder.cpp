#include "framework/GridOrder.h"

#include "framework/KeySort.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace sysadmin {

namespace {

// Blank cells stand before every value.
constexpr quint64 Blank = 0;

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

bool GridOrder::Set(int column, Qt::SortOrder direction) {
    m_direction = direction;
    if (column == m_column)
        return false;
    m_column = column;
    m_dates.clear();
    const QString format = column < 0 ? QString() : m_columns[column].dateFormat;
    if (format.isEmpty())
        for (const QString& form : {QLocale().dateFormat(QLocale::ShortFormat), DateForm()})
            m_dates.emplace_back(form);
    else
        m_dates.emplace_back(format);
    return true;
}

void GridOrder::Build(const QList<GridRow>& rows) {
    m_values.clear();
    m_texts.clear();
    m_guesses.clear();
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
    BuildTexts(rows);
}

void GridOrder::BuildTexts(const QList<GridRow>& rows) {
    m_texts.reserve(size_t(rows.size()));
    m_guesses.reserve(size_t(rows.size()));
    QString first;
    m_common = -1;
    for (const GridRow& row : rows) {
        const QString text = TextOf(row);
        m_texts.push_back(m_collator.sortKey(text));
        if (text.isEmpty())
            continue;
        if (m_common < 0) {
            first = text;
            m_common = text.size();
        }
        m_common =
            std::mismatch(first.cbegin(), first.cbegin() + m_common, text.cbegin(), text.cend()).first -
            first.cbegin();
    }
    m_common = std::max(m_common, qsizetype(0));
    while (m_common > 0 && first[m_common - 1].isDigit()) // numbers stay whole
        --m_common;
    for (const GridRow& row : rows)
        m_guesses.push_back(GuessOf(TextOf(row)));
}

quint64 GridOrder::GuessOf(const QString& text) const {
    return GuessKeyOf(QStringView(text).mid(m_common));
}

/// Reads the values of a column of this kind; false as soon as one is of another kind, and when all are
/// blank.
bool GridOrder::ReadAll(const QList<GridRow>& rows, Kind kind) {
    m_kind = kind;
    m_values.clear();
    m_values.reserve(size_t(rows.size()));
    bool any = false;
    for (const GridRow& row : rows) {
        const std::optional<quint64> value = ReadValue(row.cells.value(m_column));
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
    if (m_kind == Kind::Text) {
        const QString text = TextOf(rows[place]);
        m_texts[size_t(place)] = m_collator.sortKey(text);
        m_guesses[size_t(place)] = GuessOf(text);
    } else {
        m_values[size_t(place)] = *ReadValue(cell);
    }
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
    if (m_kind == Kind::Text) {
        const QString text = TextOf(rows[place]);
        m_texts.insert(m_texts.begin() + place, m_collator.sortKey(text));
        m_guesses.insert(m_guesses.begin() + place, GuessOf(text));
    } else {
        m_values.insert(m_values.begin() + place, *ReadValue(cell));
    }
    return true;
}

void GridOrder::Remove(int place) {
    if (m_kind == Kind::Text) {
        m_texts.erase(m_texts.begin() + place);
        m_guesses.erase(m_guesses.begin() + place);
    } else if (m_kind != Kind::None) {
        m_values.erase(m_values.begin() + place);
    }
}

bool GridOrder::Before(int a, int b) const {
    const int comparison = Compare(a, b);
    if (comparison == 0)
        return a < b;
    return m_direction == Qt::AscendingOrder ? comparison < 0 : comparison > 0;
}

void GridOrder::Sort(std::vector<int>& places) const {
    if (m_kind == Kind::None)
        return;
    const std::vector<quint64>& keys = m_kind == Kind::Text ? m_guesses : m_values;
    const quint64 turned = m_direction == Qt::AscendingOrder ? 0 : ~quint64(0);
    std::vector<KeyedPlace> keyed;
    keyed.reserve(places.size());
    for (const int place : places)
        keyed.push_back({keys[size_t(place)] ^ turned, place});
    SortByKey(keyed);
    for (size_t i = 0; i < keyed.size(); ++i)
        places[i] = keyed[i].place;
    if (m_kind == Kind::Text)
        SortByText(places);
}

/// The rest of it for texts, whose places come as the guesses have them: rows of the same guess are sorted
/// among themselves, and all of them only where the guesses were wrong.
void GridOrder::SortByText(std::vector<int>& places) const {
    const auto before = [this](int a, int b) { return Before(a, b); };
    for (auto from = places.begin(); from != places.end();) {
        const quint64 guess = m_guesses[size_t(*from)];
        auto to =
            std::find_if(from, places.end(), [&](int place) { return m_guesses[size_t(place)] != guess; });
        if (!std::is_sorted(from, to, before))
            std::sort(from, to, before);
        from = to;
    }
    if (!std::is_sorted(places.begin(), places.end(), before))
        std::sort(places.begin(), places.end(), before);
}

std::optional<quint64> GridOrder::ReadValue(const QString& cell) const {
    if (!m_columns[m_column].items.isEmpty()) // ids, which nobody sees
        return std::nullopt;
    if (IsBlank(cell))
        return Blank;
    if (m_kind == Kind::Number) {
        const std::optional<double> number = ReadNumber(cell);
        return number ? std::optional(KeyOf(*number)) : std::nullopt;
    }
    for (const MomentReader& dates : m_dates)
        if (const auto moment = dates.Read(cell))
            return KeyOf(*moment);
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
