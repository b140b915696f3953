#pragma once

#include "security/ConfigurationWords.h"

#include <QAbstractItemModel>

#include <memory>
#include <vector>

namespace sysadmin {

/// Differences as a tree: subject, record, rows that are parts of it, values. Subjects, records and rows have
/// boxes; a box stands for all that is below it.
class DifferenceModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Column { Name, Before, After, ColumnCount };
    enum Role { KindRole = Qt::UserRole }; ///< A, C or R of what a record or row is

    explicit DifferenceModel(QObject* parent);

    /// Shows other differences, none of them chosen. The captions are those of the two values' columns.
    void Show(const ConfigurationDifferences& found, const ConfigurationWords& words, const QString& before,
              const QString& after);
    /// Shows only what holds the text, in whatever case, and is of one of the kinds ("ACR").
    void Filter(const QString& text, const QString& kinds);
    void ChooseShown(bool chosen);
    QList<ConfigurationKey> Chosen() const;
    qsizetype ChosenCount() const;
    qsizetype ShownCount() const { return m_shownCount; }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex&) const override { return ColumnCount; }
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// Other records are chosen.
    void ChoiceChanged();

private:
    struct Node {
        QString text;
        QString before;
        QString after;
        QChar kind;                ///< of what a difference is about; none of subjects and values
        qsizetype difference = -1; ///< none: a subject, a value, a record that is there because of its rows
        bool isValue = false;
        Node* parent = nullptr;
        int row = 0; ///< among the shown ones
        std::vector<std::unique_ptr<Node>> children{};
        std::vector<Node*> shown{};
    };

    Node* NodeOf(const QModelIndex& index) const;
    Node& ChildOf(Node& parent, QHash<QString, Node*>& known, const QString& key, const QString& text);
    void AddValues(Node& node, const ConfigurationDifference& difference, const ConfigurationWords& words);
    bool FilterNode(Node& node, const QString& text, const QString& kinds, bool isIn);
    bool Fits(const Node& node, const QString& text) const;
    Qt::CheckState StateOf(const Node& node) const;
    void CountBoxes(const Node& node, qsizetype& boxes, qsizetype& checked) const;
    void Choose(const Node& node, bool chosen);

    ConfigurationDifferences m_found;
    QStringList m_captions;
    Node m_root;
    std::vector<bool> m_chosen; ///< by difference
    qsizetype m_shownCount = 0;
};

} // namespace sysadmin
