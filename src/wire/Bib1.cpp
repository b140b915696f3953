#include "wire/Bib1.h"

#include <algorithm>

namespace sysadmin::wire::bib1 {

namespace {

constexpr int MostUse = 99999;

const QList<Value>& Uses() {
    static const QList<Value> values{
        {1, "personal name"},
        {2, "corporate name"},
        {3, "conference name"},
        {4, "title"},
        {5, "title series"},
        {6, "title uniform"},
        {7, "ISBN"},
        {8, "ISSN"},
        {9, "LC card number"},
        {10, "BNB card number"},
        {11, "BGF number"},
        {12, "local number"},
        {13, "Dewey classification"},
        {14, "UDC classification"},
        {15, "Bliss classification"},
        {16, "LC call number"},
        {17, "NLM call number"},
        {18, "NAL call number"},
        {19, "MOS call number"},
        {20, "local classification"},
        {21, "subject heading"},
        {22, "subject Rameau"},
        {23, "BDI index subject"},
        {24, "INSPEC subject"},
        {25, "MESH subject"},
        {26, "PA subject"},
        {27, "LC subject heading"},
        {28, "RVM subject heading"},
        {29, "local subject index"},
        {30, "date"},
        {31, "date of publication"},
        {32, "date of acquisition"},
        {33, "title key"},
        {34, "title collective"},
        {35, "title parallel"},
        {36, "title cover"},
        {37, "title added title page"},
        {38, "title caption"},
        {39, "title running"},
        {40, "title spine"},
        {41, "title other variant"},
        {42, "title former"},
        {43, "title abbreviated"},
        {44, "title expanded"},
        {45, "subject PRECIS"},
        {46, "subject RSWK"},
        {47, "subject subdivision"},
        {48, "number of the national bibliography"},
        {49, "number of the legal deposit"},
        {50, "number of a government publication"},
        {51, "number of the music publisher"},
        {52, "number in a database"},
        {53, "number of a local call"},
        {54, "code of the language"},
        {55, "code of a geographic area"},
        {56, "code of the institution"},
        {57, "name and title"},
        {58, "name geographic"},
        {59, "place of publication"},
        {60, "CODEN"},
        {61, "microform generation"},
        {62, "abstract"},
        {63, "note"},
        {1000, "author-title"},
        {1001, "record type"},
        {1002, "name"},
        {1003, "author"},
        {1004, "author name personal"},
        {1005, "author name corporate"},
        {1006, "author name conference"},
        {1007, "standard identifier"},
        {1008, "subject LC children's"},
        {1009, "subject name personal"},
        {1010, "body of text"},
        {1011, "date and time added to the database"},
        {1012, "date and time last modified"},
        {1013, "authority or format identifier"},
        {1014, "concept text"},
        {1015, "concept reference"},
        {1016, "any"},
        {1017, "server choice"},
        {1018, "publisher"},
        {1019, "record source"},
        {1020, "editor"},
        {1021, "bibliographic level"},
        {1022, "geographic class"},
        {1023, "indexed by"},
        {1024, "map scale"},
        {1025, "music key"},
        {1026, "related periodical"},
        {1027, "report number"},
        {1028, "stock number"},
        {1030, "thematic number"},
        {1031, "material type"},
        {1032, "document identifier"},
        {1033, "host item"},
        {1034, "content type"},
        {1035, "anywhere"},
        {1036, "author-title-subject"},
    };
    return values;
}

} // namespace

const QList<Value>& ValuesOf(Type type) {
    static const QList<Value> relations{
        {1, "less than"},    {2, "less than or equal"}, {3, "equal"},      {4, "greater or equal"},
        {5, "greater than"}, {6, "not equal"},          {100, "phonetic"}, {101, "stem"},
        {102, "relevance"},  {103, "always matches"}};
    static const QList<Value> positions{
        {1, "first in field"}, {2, "first in subfield"}, {3, "any position in field"}};
    static const QList<Value> structures{{1, "phrase"},
                                         {2, "word"},
                                         {3, "key"},
                                         {4, "year"},
                                         {5, "date (normalized)"},
                                         {6, "word list"},
                                         {100, "date (un-normalized)"},
                                         {101, "name (normalized)"},
                                         {102, "name (un-normalized)"},
                                         {103, "structure"},
                                         {104, "urx"},
                                         {105, "free form text"},
                                         {106, "document text"},
                                         {107, "local number"},
                                         {108, "string"},
                                         {109, "numeric string"}};
    static const QList<Value> completenesses{
        {1, "incomplete subfield"}, {2, "complete subfield"}, {3, "complete field"}};
    static const QList<Value> none;
    switch (type) {
    case Use:
        return Uses();
    case Relation:
        return relations;
    case Position:
        return positions;
    case Structure:
        return structures;
    case Completeness:
        return completenesses;
    case Truncation:
        break;
    }
    return none;
}

bool IsValue(Type type, int number) {
    if (type == Use)
        return number >= 1 && number <= MostUse;
    const QList<Value>& values = ValuesOf(type);
    return std::any_of(values.begin(), values.end(),
                       [number](const Value& value) { return value.number == number; });
}

} // namespace sysadmin::wire::bib1
