#pragma once

#include "cataloging/DuplicateSearch.h"
#include "marc/ReadRecords.h"

#include <QDialog>

class QLabel;

namespace sysadmin {

class ListGrid;
class Prompter;

/// Tries a rule on a file of records: what an import would make of each of them. Nothing is written.
class TryImportDialog : public QDialog {
    Q_OBJECT

public:
    /// `search` says which records are the same.
    TryImportDialog(Prompter& prompter, const ImportTrialRule& rule, const TriedLibrary& library,
                    const DuplicateSearch& search, QWidget* parent);

private:
    void OpenRecords();
    void OpenLibrary();
    void Paste();
    void Take(const marc::Result& read, const QString& source);
    void Try();
    void ShowSummary();
    void ShowRecord();

    Prompter& m_prompter;
    ImportTrialRule m_rule;
    TriedLibrary m_library;
    DuplicateSearch m_search;   ///< without records
    marc::Result m_read;        ///< the records that are tried
    QString m_source;           ///< what they were read from
    marc::Result m_libraryRead; ///< records that the library has
    QList<TriedRecord> m_tried;
    QLabel* lblSource = nullptr;
    QLabel* lblSummary = nullptr;
    ListGrid* vsfTriedRecords = nullptr;
    ListGrid* vsfTriedDetails = nullptr;
};

} // namespace sysadmin
