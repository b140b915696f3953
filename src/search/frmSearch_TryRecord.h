#pragma once

#include "framework/forms/GridRow.h"

#include <QDialog>

#include <functional>

class QLabel;
class QPlainTextEdit;

namespace sysadmin {

class ListGrid;
class Prompter;

namespace marc {
struct Record;
}

/// What is tried on a record.
struct RecordTrial {
    QString title{};
    int helpContext = 0;
    QString sample{};    ///< a record to begin with, a line for each field
    QString listName{};  ///< what a screen reader calls the list
    QString nothing{};   ///< said when nothing is found
    QString foundWord{}; ///< said of what is found ("Links: %1")
    QList<GridColumn> columns{};
    std::function<QList<GridRow>(const marc::Record& record)> find{};
};

/// A pasted MARC record, and what comes of it while it is edited. Nothing is sent.
class frmSearch_TryRecord : public QDialog {
    Q_OBJECT

public:
    frmSearch_TryRecord(Prompter& prompter, const RecordTrial& trial, QWidget* parent);

private:
    void Show();

    RecordTrial m_trial;
    QPlainTextEdit* txtRecord = nullptr;
    ListGrid* vsfFound = nullptr;
    QLabel* lblOutcome = nullptr;
};

} // namespace sysadmin
