#include "server/store/FieldsText.h"

#include <algorithm>

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

void FieldsText::Append(const QString& name, const QVariant& before, const QVariant& after) {
    m_text += m_text.isEmpty() ? "{\"" : ",\"";
    m_text += name.toLatin1();
    m_text += "\":[";
    AppendValue(before);
    m_text += ',';
    AppendValue(after);
    m_text += ']';
}

void FieldsText::AppendValue(const QVariant& value) {
    if (value.isNull()) {
        m_text += "null";
        return;
    }
    const QByteArray bytes = value.toString().toUtf8();
    m_text += '"';
    if (std::none_of(bytes.begin(), bytes.end(), NeedsEscape))
        m_text += bytes;
    else
        for (const char character : bytes)
            if (NeedsEscape(character))
                AppendEscaped(m_text, character);
            else
                m_text += character;
    m_text += '"';
}

} // namespace sysadmin::server
