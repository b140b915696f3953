#include "server/files/DifferenceText.h"

namespace sysadmin::server {

namespace {

/// A value on one line.
QString Quoted(QString value) {
    return '"' + value.replace('\r', "\\r").replace('\n', "\\n") + '"';
}

QString WordOf(Difference::Kind kind) {
    switch (kind) {
    case Difference::Kind::Added:
        return "added";
    case Difference::Kind::Changed:
        return "changed";
    case Difference::Kind::Removed:
        return "removed";
    }
    Q_UNREACHABLE();
}

} // namespace

QStringList LinesOf(const Difference& difference) {
    QString head = WordOf(difference.kind);
    if (!difference.name.isEmpty())
        head += ' ' + Quoted(difference.name);
    QStringList lines{FileProblem{difference.table, difference.line, head}.Sentence()};
    if (difference.kind == Difference::Kind::Changed)
        for (const ChangedCell& cell : difference.cells)
            lines << "    " + FileHeading(*cell.column) + ": " + Quoted(cell.before) + " -> " +
                         Quoted(cell.after);
    return lines;
}

QString SumOf(const Comparison& comparison) {
    using Kind = Difference::Kind;
    QStringList sums;
    for (const Kind kind : {Kind::Added, Kind::Changed, Kind::Removed})
        sums << QString("%1 %2").arg(comparison.Count(kind)).arg(WordOf(kind));
    return sums.join(", ") + '.';
}

QStringList MissingSecrets(const FileForm& form, const Comparison& comparison) {
    QMap<QString, QStringList> added;
    for (const Difference& difference : comparison.differences)
        if (difference.kind == Difference::Kind::Added)
            added[difference.table] << Quoted(difference.name);
    QStringList lines;
    for (auto table = added.begin(); table != added.end(); ++table) {
        QStringList secrets;
        for (const Column& column : form.Named(table.key()).columns)
            if (column.secret)
                secrets << column.name;
        if (table.key() == u"operators")
            lines << "New operators cannot sign on until an administrator gives them a password: " +
                         table->join(", ") + '.';
        else if (!secrets.isEmpty())
            lines << QString("New records of %1 come without %2, which is in no file: %3.")
                         .arg(table.key(), secrets.join(", "), table->join(", "));
    }
    return lines;
}

} // namespace sysadmin::server
