#include "framework/forms/ShownDate.h"

#include <QDateTime>
#include <QLocale>

namespace sysadmin {

QString ShownDate(const QString& text) {
    constexpr qsizetype DateLength = 10;
    constexpr qsizetype TimeLength = 19;
    // Every cell of every list comes by here: what cannot be a date is told by a look.
    if ((text.size() != DateLength && text.size() != TimeLength) || text[4] != u'-' || text[7] != u'-')
        return text;
    if (text.size() == DateLength) {
        const QDate date = QDate::fromString(text, Qt::ISODate);
        return date.isValid() ? QLocale().toString(date, QLocale::ShortFormat) : text;
    }
    const QDateTime time = QDateTime::fromString(text, "yyyy-MM-dd HH:mm:ss");
    return time.isValid() ? QLocale().toString(time, QLocale::ShortFormat) : text;
}

} // namespace sysadmin
