#pragma once

#include "marc/ReadRecords.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QPlainTextEdit;

namespace sysadmin {

class Prompter;

/// A MARC record to try something with: pasted, or one of those of a file.
class RecordEntry : public QWidget {
    Q_OBJECT

public:
    RecordEntry(Prompter& prompter, QWidget* parent);

    /// What it begins with, so that there is something to see.
    void SetText(const QString& text);
    /// Whether there is a record; what cannot be read is told below the text.
    bool HasRecord() const;
    /// The chosen record; an empty one when there is none.
    marc::Record Record() const;

signals:
    void RecordChanged();

private:
    void OpenFile();
    /// Takes what was read, and shows its first record.
    void Take(const marc::Result& result);
    void ShowRecord();

    Prompter& m_prompter;
    QList<marc::Record> m_records;
    bool m_isFromFile = false;
    QPlainTextEdit* txtRecord = nullptr;
    QComboBox* cboRecord = nullptr;
    QLabel* lblProblems = nullptr;
};

} // namespace sysadmin
