#pragma once

#include <QDialog>
#include <QList>

class QPushButton;

namespace sysadmin {

/// What became of a record that the operator wanted to change or delete.
struct Conflict {
    QString subject{};    ///< the record's kind ("Vendor Type")
    QString by{};         ///< the person; empty when that is not known
    QString at{};         ///< "yyyy-MM-dd HH:mm:ss"
    bool removed = false; ///< the record is gone
    bool deletes = false; ///< the operator wanted to delete it
};

/// A field in which the versions of a record differ.
struct Difference {
    QString caption;
    QString stored; ///< what was there when the operator began
    QString mine;
    QString theirs;
};

enum class ConflictAnswer { KeepTheirs, SaveMine, BackToEditing };

/// Says that somebody else changed or deleted the record meanwhile, shows the fields that differ side by
/// side, and asks what is to hold.
class ConflictDialog : public QDialog {
    Q_OBJECT

public:
    /// `canSave`: whether the operator's version may be saved (a deleted record only where it can be added).
    ConflictDialog(const Conflict& conflict, const QList<Difference>& differences, bool canSave,
                   QWidget* parent);

    ConflictAnswer Answer() const { return m_answer; }

private:
    QPushButton* AddButton(const QString& name, const QString& caption, ConflictAnswer answer);

    ConflictAnswer m_answer = ConflictAnswer::BackToEditing;
};

} // namespace sysadmin
