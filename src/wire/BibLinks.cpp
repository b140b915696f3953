#include "wire/BibLinks.h"

#include <QRegularExpression>

namespace sysadmin::wire::links {

bool IsDirection(const QString& text) {
    return text == direction::Host || text == direction::Part || text == direction::Earlier ||
           text == direction::Later || text == direction::Related;
}

bool IsField(const QString& text) {
    static const QRegularExpression pattern(R"(^\d\d[\dX]$)");
    return pattern.match(text).hasMatch();
}

bool IsSubfield(const QString& text) {
    static const QRegularExpression pattern("^[0-9a-z]?$");
    return pattern.match(text).hasMatch();
}

bool IsControlField(const QString& field) {
    return field.startsWith(u"00");
}

} // namespace sysadmin::wire::links
