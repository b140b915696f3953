#pragma once

#include "framework/forms/Field.h"
#include "framework/forms/GridRow.h"
#include "framework/forms/PickedLists.h"

#include <functional>

namespace sysadmin {

/// A grid of attached things inside a record (phones, domain names, limits). Reading and putting the rows is
/// the screen's own matter: their tags and order differ from request to request.
class RowsField : public Field {
public:
    RowsField(Form& form, const FieldSpec& spec, const QList<GridColumn>& columns)
        : Field(form, Kind::Rows, spec)
        , m_columns(columns) {}
    const QList<GridColumn>& Columns() const { return m_columns; }
    const QList<GridRow>& Rows() const { return m_draft; }
    void SetStoredRows(const QList<GridRow>& rows);
    void SetRows(const QList<GridRow>& rows);
    /// Adds the row or replaces the one with its key.
    void PutRow(const GridRow& row);
    void RemoveRow(const QString& key);
    const GridRow* FindRow(const QString& key) const;

    void Load(RequestChannel&) override {}
    void Put(RequestChannel&) const override {}
    void Clear() override { SetStoredRows({}); }
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override { return m_draft.isEmpty(); }
    void Accept() override { m_stored = m_draft; }
    void Revert() override { SetRows(m_stored); }

private:
    QList<GridColumn> m_columns;
    QList<GridRow> m_stored;
    QList<GridRow> m_draft;
};

/// An entry of a list whose entries can be checked.
struct CheckedItem {
    QString id;
    QString text;
    bool checked = false;
    QString data{}; ///< whatever travels with it
    bool operator==(const CheckedItem&) const = default;
};

/// A list of entries with a check mark each. Reading and putting it is the screen's own matter.
class CheckedField : public Field {
public:
    /// `single`: checking an entry takes the mark from the one that had it.
    CheckedField(Form& form, const FieldSpec& spec, bool single = false)
        : Field(form, Kind::Checked, spec)
        , m_single(single) {}
    const QList<CheckedItem>& Items() const { return m_draft; }
    void SetStoredItems(const QList<CheckedItem>& items);
    void SetChecked(qsizetype index, bool checked);

    void Load(RequestChannel&) override {}
    void Put(RequestChannel&) const override {}
    void Clear() override { SetStoredItems({}); }
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override { return m_draft.isEmpty(); }
    void Accept() override { m_stored = m_draft; }
    void Revert() override;

private:
    bool m_single;
    QList<CheckedItem> m_stored;
    QList<CheckedItem> m_draft;
};

/// The given names and captions of a pair of lists with its four buttons.
struct PickedNames {
    QString availableGrid;
    QString availableCaption;
    QString selectedGrid;
    QString selectedCaption;
    QString select = "cmdSelect";
    QString selectAll = "cmdSelectAll";
    QString discard = "cmdDiscard";
    QString discardAll = "cmdDiscardAll";
};

/// Two lists, available and selected, between which rows are moved. The screen reads and puts them.
class PickedField : public Field {
public:
    PickedField(Form& form, const FieldSpec& spec, const PickedNames& names)
        : Field(form, Kind::Picked, spec)
        , m_names(names) {}
    const PickedNames& Names() const { return m_names; }
    const PickedLists& Lists() const { return m_lists; }
    /// Replaces both lists with what the server has.
    void LoadLists(const QList<GridRow>& available, const QList<GridRow>& selected);
    /// Reads both lists of the current reply: records of an id tag with a name tag each.
    void LoadPairs(RequestChannel& channel, const QString& availableId, const QString& availableName,
                   const QString& selectedId, const QString& selectedName);
    /// Changes the lists and tells the form.
    void Move(const std::function<void(PickedLists&)>& move);

    void Load(RequestChannel&) override {}
    void Put(RequestChannel&) const override {}
    void Clear() override { LoadLists({}, {}); }
    bool IsChanged() const override { return m_lists.Changed(); }
    bool IsBlank() const override { return m_lists.Selected().isEmpty(); }
    void Accept() override { m_lists.Accept(); }
    void Revert() override;
    void BecomeNew() override;

private:
    PickedNames m_names;
    PickedLists m_lists;
};

/// The rows of the reply's records that begin with `idTag`: key the id, one cell the name.
QList<GridRow> ReadPairs(RequestChannel& channel, const QString& idTag, const QString& nameTag);

} // namespace sysadmin
