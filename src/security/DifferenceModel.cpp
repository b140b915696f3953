#include "security/DifferenceModel.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QSize>

#include <algorithm>

namespace sysadmin {

DifferenceModel::DifferenceModel(QObject* parent)
    : QAbstractItemModel(parent)
    , m_captions({tr("Setting"), {}, {}}) {}

DifferenceModel::Node& DifferenceModel::ChildOf(Node& parent, QHash<QString, Node*>& known,
                                                const QString& key, const QString& text) {
    Node*& node = known[key];
    if (!node) {
        parent.children.push_back(std::make_unique<Node>());
        node = parent.children.back().get();
        node->parent = &parent;
        node->text = text;
    }
    return *node;
}

void DifferenceModel::AddValues(Node& node, const ConfigurationDifference& difference,
                                const ConfigurationWords& words) {
    for (const ConfigurationDifference::Value& value : difference.values) {
        auto child = std::make_unique<Node>();
        child->text = words.FieldOf(difference.table, value.column);
        // What is added was nothing before, and what goes is nothing after.
        if (difference.kind != u'A')
            child->before = words.ValueOf(difference.table, value.column, value.before);
        if (difference.kind != u'R')
            child->after = words.ValueOf(difference.table, value.column, value.after);
        child->isValue = true;
        child->parent = &node;
        node.children.push_back(std::move(child));
    }
}

void DifferenceModel::Show(const ConfigurationDifferences& found, const ConfigurationWords& words,
                           const QString& before, const QString& after) {
    beginResetModel();
    m_found = found;
    m_captions = {tr("Setting"), before, after};
    m_root = Node();
    m_chosen.assign(size_t(found.differences.size()), false);
    QHash<QString, Node*> subjects;
    QHash<QString, Node*> records;
    // Values stand above rows: records come first, then the parts of them.
    for (const bool parts : {false, true})
        for (qsizetype i = 0; i < found.differences.size(); ++i) {
            const ConfigurationDifference& difference = found.differences[i];
            const QString whole = found.tables[difference.table].whole;
            if (whole.isEmpty() == parts)
                continue;
            const QString subject = words.SubjectOf(difference.table);
            Node& subjectNode = ChildOf(m_root, subjects, subject, subject);
            const QString table = parts ? whole : difference.table;
            const QString name = difference.wholeName.isEmpty() ? subject : difference.wholeName;
            Node& record = ChildOf(subjectNode, records,
                                   QStringList{subject, table, difference.wholeKey}.join(QChar(1)), name);
            Node* node = &record;
            if (parts) {
                record.children.push_back(std::make_unique<Node>());
                node = record.children.back().get();
                node->parent = &record;
                node->text = words.RowOf(difference);
            }
            node->difference = i;
            node->kind = difference.kind;
            AddValues(*node, difference, words);
        }
    std::stable_sort(m_root.children.begin(), m_root.children.end(), [](const auto& one, const auto& other) {
        return QString::localeAwareCompare(one->text, other->text) < 0;
    });
    m_shownCount = 0;
    FilterNode(m_root, {}, "ACR", true);
    endResetModel();
    emit ChoiceChanged();
}

bool DifferenceModel::Fits(const Node& node, const QString& text) const {
    return node.text.contains(text, Qt::CaseInsensitive) || node.before.contains(text, Qt::CaseInsensitive) ||
           node.after.contains(text, Qt::CaseInsensitive);
}

bool DifferenceModel::FilterNode(Node& node, const QString& text, const QString& kinds, bool isIn) {
    isIn = isIn || Fits(node, text); // what is below a hit belongs to it
    node.shown.clear();
    const bool isOfKind = node.difference < 0 || kinds.contains(node.kind);
    bool hasHit = node.children.empty() && isIn && isOfKind;
    for (const auto& child : node.children) {
        if (child->isValue && !isOfKind)
            continue;
        // Of a record with a hit among its values all values are shown.
        const bool isHit = FilterNode(*child, text, kinds, isIn);
        hasHit = hasHit || isHit;
        if (isHit || child->isValue)
            node.shown.push_back(child.get());
    }
    if (node.difference >= 0 && isIn && isOfKind)
        hasHit = true;
    if (!hasHit)
        node.shown.clear();
    if (hasHit && node.difference >= 0 && isOfKind)
        ++m_shownCount;
    for (size_t i = 0; i < node.shown.size(); ++i)
        node.shown[i]->row = int(i);
    return hasHit;
}

void DifferenceModel::Filter(const QString& text, const QString& kinds) {
    beginResetModel();
    m_shownCount = 0;
    FilterNode(m_root, text.simplified(), kinds, text.simplified().isEmpty());
    endResetModel();
    emit ChoiceChanged();
}

void DifferenceModel::Choose(const Node& node, bool chosen) {
    if (node.difference >= 0)
        m_chosen[size_t(node.difference)] = chosen;
    for (const Node* child : node.shown)
        if (!child->isValue)
            Choose(*child, chosen);
}

void DifferenceModel::ChooseShown(bool chosen) {
    Choose(m_root, chosen);
    emit layoutChanged();
    emit ChoiceChanged();
}

QList<ConfigurationKey> DifferenceModel::Chosen() const {
    QList<ConfigurationKey> chosen;
    for (size_t i = 0; i < m_chosen.size(); ++i)
        if (m_chosen[i])
            chosen.append({m_found.differences[qsizetype(i)].table, m_found.differences[qsizetype(i)].key});
    return chosen;
}

qsizetype DifferenceModel::ChosenCount() const {
    return std::count(m_chosen.begin(), m_chosen.end(), true);
}

void DifferenceModel::CountBoxes(const Node& node, qsizetype& boxes, qsizetype& checked) const {
    if (node.difference >= 0) {
        ++boxes;
        checked += m_chosen[size_t(node.difference)] ? 1 : 0;
    }
    for (const auto& child : node.children)
        if (!child->isValue)
            CountBoxes(*child, boxes, checked);
}

Qt::CheckState DifferenceModel::StateOf(const Node& node) const {
    qsizetype boxes = 0;
    qsizetype checked = 0;
    CountBoxes(node, boxes, checked);
    return checked == 0 ? Qt::Unchecked : checked == boxes ? Qt::Checked : Qt::PartiallyChecked;
}

DifferenceModel::Node* DifferenceModel::NodeOf(const QModelIndex& index) const {
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : const_cast<Node*>(&m_root);
}

QModelIndex DifferenceModel::index(int row, int column, const QModelIndex& parent) const {
    const Node* node = NodeOf(parent);
    return row >= 0 && row < int(node->shown.size()) ? createIndex(row, column, node->shown[size_t(row)])
                                                     : QModelIndex();
}

QModelIndex DifferenceModel::parent(const QModelIndex& child) const {
    Node* above = NodeOf(child)->parent;
    return !above || above == &m_root ? QModelIndex() : createIndex(above->row, 0, above);
}

int DifferenceModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : int(NodeOf(parent)->shown.size());
}

QVariant DifferenceModel::data(const QModelIndex& index, int role) const {
    const Node* node = NodeOf(index);
    if (role == KindRole)
        return node->kind;
    if (role == Qt::CheckStateRole)
        return index.column() == Name && !node->isValue ? QVariant(StateOf(*node)) : QVariant();
    if (role == Qt::SizeHintRole) // room between the boxes
        return QSize(0, QFontMetrics(QGuiApplication::font()).height() + 8);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    if (index.column() == Name)
        return node->text;
    // What happens to a record stands where its values would.
    if (!node->isValue && index.column() == After)
        return role != Qt::DisplayRole ? QVariant()
               : node->kind == u'A'    ? tr("added")
               : node->kind == u'C'    ? tr("changed")
               : node->kind == u'R'    ? tr("removed")
                                       : QVariant();
    return index.column() == Before ? node->before : node->after;
}

bool DifferenceModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole)
        return false;
    Choose(*NodeOf(index), value.toInt() != Qt::Unchecked);
    // Boxes above and below follow.
    for (QModelIndex above = index; above.isValid(); above = above.parent())
        emit dataChanged(above, above, {Qt::CheckStateRole});
    const std::function<void(const QModelIndex&)> tellBelow = [&](const QModelIndex& whole) {
        if (const int rows = rowCount(whole); rows > 0) {
            emit dataChanged(this->index(0, Name, whole), this->index(rows - 1, Name, whole),
                             {Qt::CheckStateRole});
            for (int row = 0; row < rows; ++row)
                if (!NodeOf(this->index(row, Name, whole))->isValue)
                    tellBelow(this->index(row, Name, whole));
        }
    };
    tellBelow(index);
    emit ChoiceChanged();
    return true;
}

QVariant DifferenceModel::headerData(int section, Qt::Orientation orientation, int role) const {
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? m_captions.value(section) : QVariant();
}

Qt::ItemFlags DifferenceModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == Name && !NodeOf(index)->isValue ? usual | Qt::ItemIsUserCheckable : usual;
}

} // namespace sysadmin

#include "moc_DifferenceModel.cpp"
