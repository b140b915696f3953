#include "server/store/FieldsText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace sysadmin::server {

namespace {

bool NeedsEscape(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

void AppendEscaped(QByteArray& text, char character) {
    static constexpr std::pair<char, char> letters[] = {{'"', '"'},  {'\\', '\\'}, {'\b', 'b'}, {'\f', 'f'},
                                                        {'\n', 'n'}, {'\r', 'r'},  {'\t', 't'}};
    text += '\\';
    for (const auto& [what, letter] : letters)
        if (what == character) {
            text += letter;
            return;
        }
    text += 'u' + QByteArray::number(character, 16).rightJustified(4, '0');
}

} // namespace

char* FieldsText::Room(qsizetype bytes) {
    if (m_size + bytes > m_text.size())
        m_text.resize(2 * (m_size + bytes));
    return m_text.data() + m_size;
}

void FieldsText::Append(QByteArrayView bytes) {
    std::copy(bytes.begin(), bytes.end(), Room(bytes.size()));
    m_size += bytes.size();
}

void FieldsText::Append(const QByteArray& key, const QVariant& before, const QVariant& after) {
    Append(m_size == 0 ? "{" : ",");
    Append(key);
    AppendValue(before);
    Append(",");
    AppendValue(after);
    Append("]");
}

QByteArray FieldsText::Take() {
    Append(m_size == 0 ? "{}" : "}");
    return {m_text.constData(), std::exchange(m_size, 0)};
}

void FieldsText::AppendValue(const QVariant& value) {
    if (value.isNull())
        Append("null");
    else if (value.typeId() == QMetaType::QString)
        AppendText(*static_cast<const QString*>(value.constData()));
    else if (value.typeId() == QMetaType::LongLong)
        AppendNumber(*static_cast<const qint64*>(value.constData()));
    else
        AppendText(value.toString());
}

void FieldsText::AppendNumber(qint64 number) {
    constexpr qsizetype most = std::numeric_limits<qint64>::digits10 + 4; // a sign and quotes
    char* const begin = Room(most);
    *begin = '"';
    char* end = std::to_chars(begin + 1, begin + most, number).ptr;
    *end++ = '"';
    m_size += end - begin;
}

void FieldsText::AppendText(const QString& text) {
    const auto isPlain = [](QChar character) {
        return character.unicode() < 0x80 && !NeedsEscape(char(character.unicode()));
    };
    if (std::all_of(text.begin(), text.end(), isPlain)) { // as nearly all are
        char* end = Room(text.size() + 2);
        *end++ = '"';
        end = std::transform(text.begin(), text.end(), end,
                             [](QChar character) { return char(character.unicode()); });
        *end = '"';
        m_size += text.size() + 2;
        return;
    }
    QByteArray escaped;
    for (const char character : text.toUtf8())
        if (NeedsEscape(character))
            AppendEscaped(escaped, character);
        else
            escaped += character;
    Append(QByteArray('"' + escaped + '"'));
}

} // namespace sysadmin::server
