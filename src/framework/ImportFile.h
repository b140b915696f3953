#pragma once

#include "core/Prompter.h"
#include "wire/Csv.h"

#include <QDialog>
#include <QList>

#include <functional>

class QComboBox;

namespace sysadmin {

class ValueField;

/// A file of separated values: its headings and the records below them.
struct ImportFile {
    QStringList headings{};
    QList<wire::CsvRecord> records{}; ///< without empty lines
    QString problem{};                ///< why it cannot be read; empty: it was
};

/// Reads text in UTF-8 (or UTF-16 with a byte order mark) whose values are separated by commas, semicolons or
/// tabs: by whichever parts the headings most.
ImportFile ReadImportFile(const QByteArray& bytes);

/// What a column of a file can be about.
struct ImportTarget {
    QString caption;
    QStringList names{};         ///< what the column is called in files: captions, tags
    ValueField* field = nullptr; ///< null: it only says which record is meant
    int listColumn = -1;         ///< in which the list shows it; -1: in none, it cannot say which record
};

/// Which columns go to which targets.
struct ImportPlan {
    ImportFile file{};
    QList<ImportTarget> targets{};
    QList<int> columns{}; ///< for each column of the file the target's place, -1: it is not imported
    int key = -1;         ///< place of the target that says which record a line is about
};

/// For each heading the place of the target that has this name, letter case, blanks and a colon at the end
/// apart; -1 where none has, and where another column goes there already.
QList<int> MatchColumns(const QStringList& headings, const QList<ImportTarget>& targets);

/// Shows which column goes where, and lets the operator change it. `preview` is called with what he decides;
/// the dialog closes when it answers true.
class frmImportColumns : public QDialog {
    Q_OBJECT

public:
    frmImportColumns(Prompter& prompter, const ImportPlan& plan, const QString& fileName, int helpContext,
                     std::function<bool(const ImportPlan&)> preview, QWidget* parent);
    void accept() override;

private:
    void OfferKeys();

    Prompter& m_prompter;
    ImportPlan m_plan;
    std::function<bool(const ImportPlan&)> m_preview;
    QList<QComboBox*> m_boxes;
    QComboBox* cboKey = nullptr;
};

} // namespace sysadmin
