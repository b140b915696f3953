#include "framework/MomentReader.h"

#include <QDateTime>
#include <QLocale>

#include <chrono>

namespace sysadmin {

namespace {

constexpr double SecondsOfDay = 24 * 60 * 60;
constexpr int FirstYearOfTwoDigits = 1900; // as Qt takes them

struct Moment {
    int year = 0;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;

    int& Of(char16_t what) {
        switch (what) {
        case u'y':
            return year;
        case u'M':
            return month;
        case u'd':
            return day;
        case u'H':
            return hour;
        case u'm':
            return minute;
        default:
            return second;
        }
    }
};

} // namespace

MomentReader::MomentReader(const QString& format)
    : m_format(format) {
    if (!Split())
        m_parts.clear();
}

bool MomentReader::Split() {
    for (qsizetype i = 0; i < m_format.size();) {
        const QChar letter = m_format[i];
        qsizetype end = i + 1;
        while (end < m_format.size() && m_format[end] == letter)
            ++end;
        const int count = int(end - i);
        if (letter == u'y') {
            if (count != 2 && count != 4)
                return false;
            m_parts.push_back({u'y', count, count});
        } else if (letter == u'M' || letter == u'd' || letter == u'H' || letter == u'm' || letter == u's') {
            if (count > 2)
                return false;
            m_parts.push_back({letter.unicode(), count, 2});
        } else if (letter.isLetter() || letter == u'\'') {
            return false;
        } else {
            m_parts.insert(m_parts.end(), size_t(count), Part{.what = letter.unicode()});
        }
        i = end;
    }
    return !m_parts.empty();
}

std::optional<double> MomentReader::Read(QStringView text) const {
    if (m_parts.empty()) {
        const QDateTime read = QLocale().toDateTime(text.toString(), m_format);
        return read.isValid() ? std::optional(double(read.date().toJulianDay()) * SecondsOfDay +
                                              read.time().msecsSinceStartOfDay() / 1000)
                              : std::nullopt;
    }
    Moment moment;
    qsizetype at = 0;
    for (const Part& part : m_parts) {
        if (part.least == 0) {
            if (at >= text.size() || text[at] != QChar(part.what))
                return std::nullopt;
            ++at;
            continue;
        }
        int value = 0;
        int digits = 0;
        while (digits < part.most && at < text.size() && text[at] >= u'0' && text[at] <= u'9') {
            value = value * 10 + (text[at].unicode() - u'0');
            ++digits;
            ++at;
        }
        if (digits < part.least)
            return std::nullopt;
        if (part.what == u'y' && part.most == 2)
            value += FirstYearOfTwoDigits;
        moment.Of(part.what) = value;
    }
    // The standard library's calendar is several times as quick as Qt's.
    const std::chrono::year_month_day date(std::chrono::year(moment.year),
                                           std::chrono::month(unsigned(moment.month)),
                                           std::chrono::day(unsigned(moment.day)));
    if (at != text.size() || moment.year == 0 || !date.ok() || moment.hour > 23 || moment.minute > 59 ||
        moment.second > 59)
        return std::nullopt;
    constexpr int JulianDayOf1970 = 2440588;
    const int day = std::chrono::sys_days(date).time_since_epoch().count() + JulianDayOf1970;
    return double(day) * SecondsOfDay + (moment.hour * 60 + moment.minute) * 60 + moment.second;
}

} // namespace sysadmin
