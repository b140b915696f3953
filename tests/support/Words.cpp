#include "support/Words.h"

namespace sysadmin::testing {

QStringList SplitWords(const QString& line) {
    QStringList words;
    QString word;
    bool quoted = false;
    bool any = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar letter = line[i];
        if (quoted && letter == '\\' && i + 1 < line.size()) {
            const QChar next = line[++i];
            word += next == 'n' ? QString("\r\n") : QString(next);
        } else if (letter == '"') {
            quoted = !quoted;
            any = true;
        } else if (letter == ' ' && !quoted) {
            if (any)
                words.append(word);
            word.clear();
            any = false;
        } else {
            word += letter;
            any = true;
        }
    }
    if (any)
        words.append(word);
    return words;
}

wire::Fields FieldsOf(const QStringList& words) {
    wire::Fields fields;
    for (const QString& word : words)
        fields.append(wire::Field{word.section('=', 0, 0), word.section('=', 1)});
    return fields;
}

} // namespace sysadmin::testing
