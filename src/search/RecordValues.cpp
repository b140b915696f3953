#include "search/RecordValues.h"

#include "marc/ReadRecords.h"

namespace sysadmin {

bool IsFieldOf(const QString& tag, const QString& pattern) {
    if (pattern == u"*")
        return true;
    if (pattern.size() != tag.size())
        return false;
    for (qsizetype i = 0; i < tag.size(); ++i)
        if (pattern[i] != tag[i] && pattern[i] != u'X')
            return false;
    return true;
}

QStringList ValuesOf(const marc::Record& record, const QString& field, const QString& subfields) {
    QStringList values;
    for (const marc::Field& each : record.fields) {
        if (!IsFieldOf(each.tag, field))
            continue;
        QStringList parts{each.value};
        for (const marc::Subfield& subfield : each.subfields)
            if (subfields.isEmpty() || subfields.contains(subfield.code))
                parts.append(subfield.value);
        if (const QString value = parts.join(' ').trimmed(); !value.isEmpty())
            values.append(value);
    }
    return values;
}

const QList<marc::Record>& SampleTitles() {
    static const QList<marc::Record> titles = marc::ReadRecords(QString(R"(001    200101
020    $a 9780000000217
100 1  $a Aldana, Ruth, $e author.
245 14 $a The tide tables of the northern harbours : $b how a coast learned to reckon the sea / $c Ruth Aldana.
250    $a Second edition.
264  1 $a Boston : $b Breakwater Press, $c 2024.
338    $a volume $b nc $2 rdacarrier
490 1  $a Studies in coastal history ; $v 12
650  0 $a Tides $x History.
650  0 $a Harbors.
852 0  $b STACKS $h GC301 $i .A43 2024

001    200102
022    $a 0000-0027
110 2  $a Society of Map Readers.
245 10 $a Contour : $b the journal of map readers.
264  1 $a Leeds : $b The Society, $c 1998-
338    $a online resource $b cr $2 rdacarrier
650  0 $a Map reading $v Periodicals.
852 8  $b WEB $h E-Journal

001    200103
020    $a 9780000000224
100 1  $a Okonjo, Ada, $e composer.
245 10 $a Three quartets for winds / $c Ada Okonjo.
264  1 $a Lagos : $b Harmattan Editions, $c 2019.
338    $a audio disc $b sd $2 rdacarrier
650  0 $a Wind quartets.
852 0  $b MUSIC $h M457.2 $i .O46 T4 2019
)"))
                                                  .records;
    return titles;
}

} // namespace sysadmin
