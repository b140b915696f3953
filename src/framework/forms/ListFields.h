#pragma once

#include "framework/forms/Field.h"
#include "framework/forms/PickedLists.h"
#include "framework/forms/RowsField.h"

#include <functional>

namespace sysadmin {

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
    CheckedField(Form& form, const FieldSpec& spec)
        : Field(form, Kind::Checked, spec) {}
    const QList<CheckedItem>& Items() const { return m_draft; }
    void SetStoredItems(const QList<CheckedItem>& items);
    void SetChecked(qsizetype index, bool checked);

    void Load(RequestChannel&) override {}
    void Put(RequestChannel&) const override {}
    void Clear() override { SetStoredItems({}); }
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override { return m_draft.isEmpty(); }
    bool WantsHeight() const override { return true; }
    void Accept() override { m_stored = m_draft; }
    void Revert() override;
    std::any TakeDraft() const override { return m_draft; }
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override;

private:
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

/// How a pair of lists travels. Of a reply's records those that begin with an id tag are read, with a name
/// tag each; a save puts the rows that moved out and then those that moved in, each with its state, or where
/// there is no state tag all that are selected.
struct PickedTags {
    QString availableId{}; ///< empty: the screen reads and puts the lists
    QString availableName{};
    QString selectedId{};
    QString selectedName{};
    QString state{};
    QString added = "1";
    QString removed = "3";
};

/// How a pair of lists behaves beyond moving rows.
struct PickedSpec {
    PickedTags tags{};
    QList<GridColumn> more{}; ///< columns behind the name, by cell
    /// The same of the available list, where they differ.
    std::optional<QList<GridColumn>> availableMore{};
    bool ranked = false;          ///< the order of the selected rows means something and can be changed
    QHash<int, CellEdit> edits{}; ///< columns of the selected rows that are edited in place
    /// Says why the rows may not move there; empty lets them go.
    std::function<QString(const QList<GridRow>& rows, bool toSelected)> veto{};
    /// Asks and tells about rows that are to move; answers the keys of those that do. None: all.
    std::function<QStringList(const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                              QWidget* parent)>
        admit{};
    /// The selected row's settings, drawn beside the lists: a form whose fields carry the tags of `more`.
    Form* settings = nullptr;
    RowButton modify{}; ///< opens `ask` for the selected row, locked where nothing can be edited
    RowAsker ask{};
};

/// Two lists, available and selected, between which rows are moved. Where their tags are declared, it reads
/// and puts itself.
class PickedField : public Field {
public:
    PickedField(Form& form, const FieldSpec& spec, const PickedNames& names, const PickedSpec& picked = {})
        : Field(form, Kind::Picked, spec)
        , m_names(names)
        , m_picked(picked)
        , m_lists(picked.ranked) {}
    const PickedSpec& Behaviour() const { return m_picked; }
    PickedSpec& Behaviour() { return m_picked; }
    const PickedNames& Names() const { return m_names; }
    const PickedLists& Lists() const { return m_lists; }
    /// Replaces both lists with what the server has.
    void LoadLists(const QList<GridRow>& available, const QList<GridRow>& selected);
    /// Why the rows may not move; empty when they may.
    QString Veto(const QStringList& keys, bool toSelected) const;
    /// Those of the rows that may move, after what there is to ask and tell.
    QStringList Admit(const QStringList& keys, bool toSelected, Prompter& prompter, QWidget* parent) const;
    /// Changes the lists and tells the form.
    void Move(const std::function<void(PickedLists&)>& move);

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { LoadLists({}, {}); }
    bool IsChanged() const override { return m_lists.Changed(); }
    bool IsBlank() const override { return m_lists.Selected().isEmpty(); }
    bool WantsHeight() const override { return true; }
    bool ShowsOwnCaption() const override { return true; }
    void Accept() override { m_lists.Accept(); }
    void Revert() override;
    void BecomeNew() override;
    std::any TakeDraft() const override { return m_lists; }
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override;
    QString PlainCaption() const override;

private:
    QList<GridRow> RowsOf(const QStringList& keys, bool toSelected) const;

    PickedNames m_names;
    PickedSpec m_picked;
    PickedLists m_lists;
};

/// The rows of the reply's records that begin with `idTag`: key the id, one cell the name.
QList<GridRow> ReadPairs(RequestChannel& channel, const QString& idTag, const QString& nameTag);

} // namespace sysadmin
