#include "framework/RowTexts.h"

#include <QHash>
#include <QStringMatcher>

namespace sysadmin {

namespace {

constexpr QChar Separator(0xFFFF); // no character, so that no text goes across

// Each letter by itself, as comparing without case does it: the length stays.
void AppendFolded(QString& to, QStringView text) {
    const qsizetype start = to.size();
    to.append(text);
    QChar* letters = to.data() + start;
    for (qsizetype i = 0; i < text.size(); ++i) {
        QChar& letter = letters[i];
        if (letter.unicode() < 0x80) {
            if (letter >= u'A' && letter <= u'Z')
                letter = QChar(letter.unicode() + (u'a' - u'A'));
        } else if (letter.isHighSurrogate() && i + 1 < text.size() && letters[i + 1].isLowSurrogate()) {
            const char32_t folded = QChar::toCaseFolded(QChar::surrogateToUcs4(letter, letters[i + 1]));
            letter = QChar(QChar::highSurrogate(folded));
            letters[++i] = QChar(QChar::lowSurrogate(folded));
        } else {
            letter = letter.toCaseFolded();
        }
    }
}

} // namespace

void RowTexts::Make(const QList<GridColumn>& columns, const QList<GridRow>& rows) {
    Clear();
    m_starts.reserve(size_t(rows.size()) + 1);
    // Dates and ids are many times the same, and making a text for people of one takes long.
    std::vector<QHash<QString, QString>> shown(size_t(columns.size()));
    for (const GridRow& row : rows) {
        m_starts.push_back(m_texts.size());
        for (qsizetype i = 0; i < std::min(columns.size(), row.cells.size()); ++i) {
            const GridColumn& column = columns.at(i);
            const QString cell = row.cells[i];
            if (!IsSearched(column) || cell.isEmpty())
                continue;
            if (column.items.isEmpty() && column.dateFormat.isEmpty()) {
                AppendFolded(m_texts, cell);
            } else {
                QHash<QString, QString>& known = shown[size_t(i)];
                auto text = known.constFind(cell);
                if (text == known.constEnd())
                    text = known.insert(cell, ShownText(column, cell));
                AppendFolded(m_texts, *text);
            }
            m_texts.append(Separator);
        }
    }
    m_starts.push_back(m_texts.size());
}

void RowTexts::Clear() {
    m_texts.clear();
    m_starts.clear();
}

std::vector<bool> RowTexts::RowsWith(const QString& text) const {
    std::vector<bool> found(m_starts.size() - 1);
    QString folded;
    AppendFolded(folded, text);
    const QStringMatcher matcher(folded);
    const auto next = [&](qsizetype from) { // for one letter there is something quicker
        return folded.size() == 1 ? m_texts.indexOf(folded.front(), from) : matcher.indexIn(m_texts, from);
    };
    size_t row = 0;
    for (qsizetype at = next(0); at >= 0; at = next(m_starts[row])) {
        while (m_starts[row + 1] <= at)
            ++row;
        found[row++] = true;
        if (row == found.size())
            break;
    }
    return found;
}

} // namespace sysadmin
