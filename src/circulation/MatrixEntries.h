#pragma once

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace sysadmin {

/// Whether entries are of item types that their group lends as short loans; each kind has a list of its own.
enum class MatrixKind { Regular, ShortLoan };

/// A stored circulation policy group, as far as its matrix is concerned.
struct MatrixGroup {
    QString id{};
    QString name{};
    QString clusterId{};
    bool mayEdit = false;
    /// The item types that it lends as short loans, where they are known; else they are asked for.
    std::optional<QSet<QString>> shortLoans{};
};

/// An entry of the matrix: the loan rule of a patron group for an item type.
struct MatrixEntry {
    QString id{}; ///< empty: there is none yet
    QString patronGroup{};
    QString itemType{};
    QString patronName{};
    QString itemName{};

    QString Name() const { return patronName + " - " + itemName; }
};

/// What entries can be made for ("LstMatSettings").
struct MatrixChoices {
    struct Choice {
        QString id;
        QString name;
        bool isShortLoan = false; ///< of an item type
    };
    QList<Choice> patronGroups{};
    QList<Choice> itemTypes{};

    QSet<QString> ShortLoans() const;
};

} // namespace sysadmin
