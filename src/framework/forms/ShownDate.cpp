#include "framework/forms/ShownDate.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

namespace sysadmin {

namespace {

/// The locale's short form of a time; some have seconds in it, which nobody needs to read here.
QString ShownTime(QTime time) {
    static const QRegularExpression seconds("[:.]ss?");
    return QLocale().toString(time, QLocale().timeFormat(QLocale::ShortFormat).remove(seconds));
}

} // namespace

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
    return moment.isValid() ? ShownDate(moment.date()) + ' ' + ShownTime(moment.time()) : text;
}

QString ShownTime(const QString& time) {
    const QTime value = QTime::fromString(time, "HH:mm");
    return value.isValid() ? ShownTime(value) : QString();
}

} // namespace sysadmin
