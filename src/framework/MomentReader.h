#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace sysadmin {

/// Reads many dates of one written form ("yyyyMMdd", "M/d/yy", "yyyy-MM-dd HH:mm:ss"), as fast as a list of
/// 100,000 needs it to be sorted.
class MomentReader {
public:
    /// A form with names of months or days, or with parts of the day, is left to Qt, which takes a hundred
    /// times as long.
    explicit MomentReader(const QString& format);

    /// Seconds since the first day of the calendar; none when the text is no such date.
    std::optional<double> Read(QStringView text) const;

private:
    /// A number of so many digits, or a sign that stands there itself.
    struct Part {
        char16_t what = 0; ///< y, M, d, H, m, s, or the sign
        int least = 0;     ///< digits; 0: a sign
        int most = 0;
    };
    bool Split();

    QString m_format;
    std::vector<Part> m_parts; // empty: Qt reads it
};

} // namespace sysadmin
