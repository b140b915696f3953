#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QPagedPaintDevice;

namespace sysadmin {

/// A list as it goes onto paper.
struct PrintedList {
    QString title;
    QStringList captions;
    QList<QStringList> rows; ///< as many cells as captions each
};

/// Draws the list page by page: title, captions on every page, rows, page number and date. Columns share the
/// page's width by what stands in them. Answers the number of pages.
int PaintList(const PrintedList& list, QPagedPaintDevice& device);

} // namespace sysadmin
