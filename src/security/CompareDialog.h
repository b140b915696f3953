#pragma once

#include "core/data/PickLists.h"

#include <QDialog>

#include <functional>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;

namespace sysadmin {

inline constexpr QChar DifferenceMark = u'\u2260'; ///< begins rows whose two sides differ

class Application;
class ListGrid;

/// One thing that a record has: where it belongs, what it is called, what it is.
struct ComparedItem {
    QString section;
    QString id; ///< what makes it the same thing in both records: names repeat
    QString name;
    QString value;
    bool isMember = false; ///< one of a list (a location, an operator): it is there or it is not
};
using ComparedRecord = QList<ComparedItem>;

/// Two records of one kind side by side, differences marked.
class CompareDialog : public QDialog {
    Q_OBJECT

public:
    /// Gets a record by its key; none when that failed (and was reported).
    using Describer = std::function<std::optional<ComparedRecord>(const QString& key)>;

    /// `left` is compared with one of `others`, which the operator chooses.
    CompareDialog(const QString& caption, const PickItem& left, const QList<PickItem>& others,
                  Describer describe, QWidget* parent);
    /// Whether the first record could be read; without it there is nothing to show.
    bool IsReady() const { return m_left.has_value(); }

private:
    void ReadOther();
    void ShowComparison();
    void Summarise(int differences, const QStringList& lists);

    PickItem m_leftItem;
    Describer m_describe;
    std::optional<ComparedRecord> m_left;
    std::optional<ComparedRecord> m_right;
    QComboBox* m_other = nullptr;
    QCheckBox* m_onlyDifferences = nullptr;
    QLabel* m_summary = nullptr;
    ListGrid* m_grid = nullptr;
};

/// Lets the operator compare the record selected in a list with another one of the list. `caption` is the
/// screen's.
void CompareSelected(Application& application, QWidget* parent, const QString& caption, const ListGrid& grid,
                     const CompareDialog::Describer& describe);

} // namespace sysadmin
