#pragma once

#include "framework/forms/FieldSpec.h"

#include <QHash>
#include <QObject>

#include <any>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sysadmin {

class FlagField;
class Form;
class RequestChannel;
class Rule;

/// One value (or list of values) of a record on a screen. It keeps what the server has (stored) and what the
/// operator made of it (draft); whether it changed is computed from the two. The draft lives here and is
/// never read back from a widget.
class Field {
public:
    enum class Kind {
        Text,
        MultiLine,
        Password,
        Flag,
        Choice,
        Letter,
        Number,
        Money,
        Date,
        Time,
        Interval,
        Rows,
        Picked,
        Checked,
        Own ///< a kind that brings its own editor
    };

    Field(Form& form, Kind kind, const FieldSpec& spec);
    virtual ~Field() = default;
    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;

    Kind GetKind() const { return m_kind; }
    const FieldSpec& Spec() const { return m_spec; }
    /// For whoever completes or alters a declaration before the field is drawn.
    FieldSpec& Declaration() { return m_spec; }
    const QString& Name() const { return m_spec.name; }
    const QString& Tag() const { return m_spec.tag; }
    /// Its label and the text behind the control: as declared, unless a rule of the form says otherwise.
    const QString& Caption() const { return m_caption ? *m_caption : m_spec.caption; }
    const QString& Unit() const { return m_unit ? *m_unit : m_spec.unit; }
    void SetCaption(const QString& caption);
    void SetUnit(const QString& unit);
    Form& Owner() const { return m_form; }

    /// Takes the value from the channel's current record, as stored and as draft.
    virtual void Load(RequestChannel& channel) = 0;
    /// Puts the draft into the next request.
    virtual void Put(RequestChannel& channel) const = 0;
    /// Makes it the value of a new record.
    virtual void Clear() = 0;
    virtual bool IsChanged() const = 0;
    virtual bool IsBlank() const = 0;
    /// The draft was saved: it is what the server has now.
    virtual void Accept() = 0;
    /// Brings what was edited into the form in which it is stored: when the field is left, and before a save.
    virtual void Tidy() {}
    /// Throws the draft away.
    virtual void Revert() = 0;
    /// The draft, to be given back when a dialog that edits the form is cancelled.
    virtual std::any TakeDraft() const { return {}; }
    virtual void GiveDraft(const std::any&) {}
    /// Keeps the draft as what a record that the server does not have yet begins with.
    virtual void BecomeNew() {}
    /// Whether its control is the better the more height it gets.
    virtual bool WantsHeight() const { return false; }
    /// Whether its control says the caption itself: no label is drawn for it.
    virtual bool ShowsOwnCaption() const { return false; }
    /// The draft as an operator reads it, the entries of a list one by one.
    virtual QStringList Words() const = 0;
    /// What is wrong with the draft, in a sentence for the operator; empty when nothing is.
    virtual QString Problem() const;

    /// Whether the operator may use it now: no rule of the form and no screen locks it, and where several
    /// records are edited at once it is one of the fields to be written.
    bool IsUsable() const;
    /// The field is usable only while the flag is checked.
    void EnableBy(const FlagField& flag);
    /// The screen locks or frees the field.
    void SetUsable(bool usable);
    /// The operator has finished typing and left the field; after an edit the rules that correct an entry act
    /// now.
    void Leave();
    /// Where several records are edited at once: whether the field is written to them.
    bool IsChosen() const { return m_chosen; }
    void SetChosen(bool chosen);
    /// The caption as plain words, without mnemonic mark and colon.
    virtual QString PlainCaption() const;

protected:
    /// The draft is what was loaded, cleared or saved, or the choices are other ones.
    void NotifyChange();
    /// The operator, or a rule in his place, made something else of the draft.
    void NotifyEdit();

private:
    friend class Form;
    friend class Rule;
    void Block(bool block);

    Form& m_form;
    Kind m_kind;
    FieldSpec m_spec;
    std::optional<QString> m_caption;
    std::optional<QString> m_unit;
    int m_blocks = 0; // rules that lock the field now
    bool m_usable = true;
    bool m_typed = false; // edited and not left yet
    bool m_chosen = false;
};

/// A record on a screen: its fields are public members of a class of its own, in tab order.
class Form : public QObject {
    Q_OBJECT

public:
    struct Finding {
        Field* field = nullptr;
        QString text;
    };

    Form();
    ~Form() override;

    const QList<Field*>& Fields() const { return m_fields; }
    /// The field with this control name, or null.
    Field* Find(const QString& name) const;
    /// The field that travels under this tag, or null.
    Field* FindByTag(const QString& tag) const;
    /// The field that the list shows in the column of this tag, or null.
    Field* FindByColumn(const QString& tag) const;

    void Load(RequestChannel& channel);
    void Clear();
    void Tidy();
    void Accept();
    void Revert();
    void BecomeNew();
    bool IsChanged() const;
    /// The required, usable fields that are blank.
    QList<Field*> Missing() const;
    bool IsComplete() const { return Missing().isEmpty(); }
    /// What is wrong with the record as a whole, where each of its fields is right by itself, and the field
    /// to go to.
    virtual std::optional<Finding> FormProblem() { return {}; }
    /// The first problem of a usable field in declaration order, or else of the whole.
    std::optional<Finding> FirstProblem();
    /// All of them, one per field, and that of the whole.
    QList<Finding> Problems();

    /// What the form does while the condition, which looks at drafts alone, holds. Fields, captions and pages
    /// follow it at once and after every load; values are corrected only when an edit makes it true.
    Rule& When(std::function<bool()> condition);
    /// Corrects entries once the operator has edited the field and left it.
    void WhenLeft(const Field& field, std::function<void()> correct);
    /// What `problem` (else the field itself) finds wrong is told as soon as the operator has edited the
    /// field and goes on in the form, and not only by a save. An empty text is nothing wrong.
    void TellWhenLeft(Field& field, std::function<QString()> problem = {});
    /// What there is to tell now about such a field.
    QString ProblemWhenLeft(Field* field) const;
    /// Leaves whatever was edited: what a save by key does in front of everything else.
    void LeaveFields();
    /// Whether a page of the layout, by its name, belongs to the record as it stands.
    bool HasPage(const QString& page) const { return !m_lockedPages.contains(page); }

    /// Several records are edited at once: only chosen fields can be used, checked and written.
    void SetSeveral(bool several);
    bool IsSeveral() const { return m_several; }
    QList<Field*> Chosen() const;

    QList<std::any> TakeDrafts() const;
    void GiveDrafts(const QList<std::any>& drafts);

    /// While one lives, the rules wait: what is loaded piece by piece is looked at once, when it is whole.
    class Loading {
    public:
        explicit Loading(Form& form)
            : m_form(form) {
            ++form.m_loading;
        }
        ~Loading();
        Loading(const Loading&) = delete;
        Loading& operator=(const Loading&) = delete;

    private:
        Form& m_form;
    };

signals:
    /// A field's draft, choices, caption or usability changed, whoever did it.
    void Changed(Field* field);
    /// The operator, or a rule in his place, edited the field: never raised by loading, clearing and
    /// reverting.
    void Edited(Field* field);
    /// The operator left an edited field that is told about then; null: all of them, to save what they hold,
    /// and that checks everything itself.
    void Left(Field* field);
    /// A page of the layout came to the record or left it.
    void PagesChanged();

private:
    friend class Field;
    friend class Rule;
    void FollowRules(bool edited);
    template <class Act>
    void ForEach(const Act& act);

    QList<Field*> m_fields;
    std::vector<std::unique_ptr<Rule>> m_rules;
    QList<std::pair<const Field*, std::function<void()>>> m_corrections;
    QHash<Field*, std::function<QString()>> m_toldWhenLeft;
    QStringList m_lockedPages;
    int m_loading = 0;
    bool m_several = false;
    bool m_following = false; // a rule is acting
    bool m_again = false;     // and what it did may move others
};

} // namespace sysadmin
