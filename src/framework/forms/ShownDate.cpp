#include "framework/forms/ShownDate.h"

#include <QDateTime>
#include <QLocale>

namespace sysadmin {

QString DateForm() {
    return QLocale().dateFormat(QLocale::ShortFormat).replace("yyyy", "yy").replace("yy", "yyyy");
}

QString ShownDate(QDate date) {
    return QLocale().toString(date, DateForm());
}

QString ShownDate(const QString& text, const QString& format) {
    if (!format.contains('H')) {
        const QDate date = QDate::fromString(text, format);
        return date.isValid() ? ShownDate(date) : text;
    }
    const QDateTime moment = QDateTime::fromString(text, format);
    return moment.isValid()
               ? ShownDate(moment.date()) + ' ' + QLocale().toString(moment.time(), QLocale::ShortFormat)
               : text;
}

QString ShownTime(const QString& time) {
    const QTime value = QTime::fromString(time, "HH:mm");
    return value.isValid() ? QLocale().toString(value, QLocale::ShortFormat) : QString();
}

} // namespace sysadmin
