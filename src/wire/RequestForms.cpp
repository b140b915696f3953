#include "wire/RequestForms.h"

#include <QRegularExpression>

namespace sysadmin::wire::requestforms {

const QStringList& OutsideFields() {
    static const QStringList fields{"Patron",
                                    "Dept",
                                    "Status",
                                    "Address",
                                    "Email",
                                    "Fax",
                                    "Phone",
                                    "Request Type",
                                    "Title",
                                    "Author",
                                    "Imprint",
                                    "Edition",
                                    "Article Title",
                                    "Article Author",
                                    "Vol",
                                    "No",
                                    "Date",
                                    "Pages",
                                    "Verified",
                                    "ISBN_ISSN",
                                    "Series",
                                    "Call Number",
                                    "OCLC Number",
                                    "Publisher",
                                    "Place of Publication",
                                    "Publication Date",
                                    "Need By",
                                    "Max Cost",
                                    "Pick up At",
                                    "Notes",
                                    "Account No",
                                    "ISSN"};
    return fields;
}

bool IsPatronField(const QString& outsideField) {
    static const QStringList fields{"Phone", "Fax", "Email", "Address", "Status", "Dept", "Patron"};
    return fields.contains(outsideField);
}

bool IsEmailAddress(const QString& text) {
    // Letters of any script may stand in both parts; blanks, controls and what separates addresses may not.
    static const QRegularExpression form(
        "^[^\\s\\x00-\\x1f@,;:<>()\\[\\]\"\\\\]+@[\\w-]+(\\.[\\w-]+)*\\.[\\w-]{2,}\\z",
        QRegularExpression::UseUnicodePropertiesOption);
    return text.size() <= EmailLength && !text.startsWith('.') && !text.contains("..") &&
           !text.contains(".@") && form.match(text).hasMatch();
}

} // namespace sysadmin::wire::requestforms
