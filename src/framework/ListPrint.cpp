#include "framework/ListPrint.h"

#include "core/data/Tr.h"

#include <QDate>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>

#include <algorithm>
#include <numeric>

namespace sysadmin {

namespace {

/// A cell as it stands in its line.
QString OneLine(QString cell) {
    return cell.replace("\r\n", " ").replace('\n', ' ');
}

/// The columns' widths: what their widest text takes; where that is more than the page has, columns wider
/// than their even share give way.
QList<int> WidthsFor(const PrintedList& list, const QFontMetrics& metrics, int gap, int room) {
    QList<int> widths;
    for (qsizetype column = 0; column < list.captions.size(); ++column) {
        int width = metrics.horizontalAdvance(list.captions[column]) * 5 / 4; // captions are bold
        for (const QStringList& row : list.rows)
            width = std::max(width, metrics.horizontalAdvance(row.value(column)));
        widths.append(width + gap);
    }
    int total = std::accumulate(widths.begin(), widths.end(), 0);
    for (qsizetype left = widths.size(); total > room && left > 0; --left) {
        auto widest = std::max_element(widths.begin(), widths.end());
        const int share = std::max(room / int(widths.size()), *widest - (total - room));
        if (share >= *widest)
            break;
        total -= *widest - share;
        *widest = share;
    }
    return widths;
}

} // namespace

int PaintList(const PrintedList& list, QPagedPaintDevice& device) {
    QPainter painter(&device);
    if (!painter.isActive())
        return 0;
    QFont plain = painter.font();
    plain.setPointSizeF(9);
    QFont bold = plain;
    bold.setBold(true);
    QFont large = bold;
    large.setPointSizeF(14);
    const QFontMetrics metrics(plain, &device);
    const QRect page = painter.viewport();
    const int line = metrics.height() * 3 / 2;
    const int gap = metrics.horizontalAdvance("MM");
    const QList<int> widths = WidthsFor(list, metrics, gap, page.width());
    const int head = QFontMetrics(large, &device).height() * 2;
    const qsizetype perPage = std::max(1, (page.height() - head - 3 * line) / line);
    const int pages = std::max(1, int((list.rows.size() + perPage - 1) / perPage));

    const auto drawCells = [&](const QStringList& cells, int y) {
        int x = page.left();
        for (qsizetype column = 0; column < widths.size(); ++column) {
            const QString text = painter.fontMetrics().elidedText(OneLine(cells.value(column)),
                                                                  Qt::ElideRight, widths[column] - gap / 2);
            painter.drawText(QRect(x, y, widths[column], line), Qt::AlignVCenter, text);
            x += widths[column];
        }
    };
    for (int number = 0; number < pages; ++number) {
        if (number > 0)
            device.newPage();
        painter.setFont(large);
        painter.drawText(QRect(page.left(), page.top(), page.width(), head), Qt::AlignTop, list.title);
        painter.setFont(bold);
        int y = page.top() + head;
        drawCells(list.captions, y);
        y += line;
        painter.drawLine(page.left(), y, page.right(), y);
        painter.setFont(plain);
        for (qsizetype row = number * perPage; row < std::min(list.rows.size(), (number + 1) * perPage);
             ++row) {
            drawCells(list.rows[row], y);
            y += line;
        }
        const QRect foot(page.left(), page.bottom() - line, page.width(), line);
        painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom,
                         QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
        painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom,
                         Tr("Page %1 of %2").arg(number + 1).arg(pages));
    }
    return pages;
}

} // namespace sysadmin
