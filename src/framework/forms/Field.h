#pragma once

#include "framework/forms/FieldSpec.h"

#include <QObject>

#include <optional>

namespace sysadmin {

class FlagField;
class Form;
class RequestChannel;

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
        Checked
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
    /// Takes away what is not meant to be stored, before a save.
    virtual void Tidy() {}
    /// Throws the draft away.
    virtual void Revert() = 0;
    /// Keeps the draft as what a record that the server does not have yet begins with.
    virtual void BecomeNew() {}
    /// What is wrong with the draft, in a sentence for the operator; empty when nothing is.
    virtual QString Problem() const;

    /// Whether the operator may use it now: not while the flag that it depends on is unchecked, nor while a
    /// rule of the form locks it.
    bool IsUsable() const;
    /// The field is usable only while the flag is checked.
    void EnableBy(const FlagField& flag) { m_enabledBy = &flag; }
    /// A rule of the form locks or frees the field.
    void SetUsable(bool usable);
    /// The operator has finished typing and left the field; rules that correct an entry act now.
    void NotifyLeft();
    /// The caption as plain words, without mnemonic mark and colon.
    QString PlainCaption() const;

protected:
    /// Tells the form that the draft, the choices or the usability are other ones now.
    void NotifyChange();

private:
    Form& m_form;
    Kind m_kind;
    FieldSpec m_spec;
    const FlagField* m_enabledBy = nullptr;
    bool m_usable = true;
};

/// A record on a screen: its fields are public members of a class of its own, in tab order.
class Form : public QObject {
    Q_OBJECT

public:
    struct Finding {
        Field* field = nullptr;
        QString text;
    };

    using QObject::QObject;

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
    /// Whether every required, usable field is filled.
    bool IsComplete() const;
    /// The first problem of a usable field in declaration order.
    std::optional<Finding> FirstProblem() const;

signals:
    /// A field's draft, choices or usability changed.
    void Changed(Field* field);
    /// The operator left a field that may have been edited.
    void Left(Field* field);

private:
    friend class Field;
    QList<Field*> m_fields;
};

} // namespace sysadmin
