#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/Field.h"
#include "framework/forms/ShownDate.h"

#include <QDate>
#include <QTime>

namespace sysadmin {

/// A field of one value. Stored and draft are kept as the text that travels.
class ValueField : public Field {
public:
    using Field::Field;

    const QString& Stored() const { return m_stored; }
    const QString& Draft() const { return m_draft; }
    /// What the operator or a rule made of it.
    void SetDraft(const QString& value);
    /// What the server has; the draft becomes the same.
    void SetStored(const QString& value);
    /// The draft as an operator reads it in a list.
    virtual QString DisplayText() const { return m_draft; }

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { SetStored(Spec().initial); }
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override { return m_draft.trimmed().isEmpty(); }
    void Accept() override { m_stored = m_draft; }
    void Revert() override;
    std::any TakeDraft() const override { return m_draft; }
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override { return {DisplayText()}; }
    QString Problem() const override;

protected:
    /// Turns a reply's text into the kept one, and back.
    virtual QString FromWire(const QString& value) const { return value; }
    virtual QString ToWire() const { return m_draft; }

private:
    QString m_stored;
    QString m_draft;
};

/// A line of text. Blanks that were typed around it are not stored; a text that nobody changed stays as it
/// is.
class TextField : public ValueField {
public:
    TextField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Text, spec) {}
    void Tidy() override;
};

/// Text of several lines; a line break travels as CR LF.
class MultiLineField : public ValueField {
public:
    MultiLineField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::MultiLine, spec) {}
    bool WantsHeight() const override { return true; }

protected:
    QString FromWire(const QString& value) const override;
    QString ToWire() const override;
};

/// A password being typed. Never loaded and never put by itself: only its sealed form travels.
class PasswordField : public ValueField {
public:
    PasswordField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Password, spec) {}
    void Load(RequestChannel&) override { Clear(); }
    void Put(RequestChannel&) const override {}
    QStringList Words() const override;
};

/// A Y/N switch. Whatever else the server sends is shown unchecked and kept until the operator changes it.
class FlagField : public ValueField {
public:
    FlagField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Flag, spec) {}
    bool IsOn() const { return Draft() == u"Y"; }
    void SetOn(bool on) { SetDraft(on ? "Y" : "N"); }
    void Clear() override { SetStored(Spec().initial.isEmpty() ? "N" : Spec().initial); }
    bool IsBlank() const override { return false; }
    bool ShowsOwnCaption() const override { return true; }
    QStringList Words() const override;

protected:
    QString ToWire() const override { return IsOn() ? "Y" : "N"; }
};

/// One of a list of entries, known by its id. An id that the list lacks survives load and save.
class ChoiceField : public ValueField {
public:
    ChoiceField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Choice, spec) {}
    const QList<PickItem>& Items() const { return m_items.isEmpty() ? Spec().options : m_items; }
    void SetItems(const QList<PickItem>& items);
    QString DisplayText() const override;

private:
    QList<PickItem> m_items;
};

/// One of a few options that stand side by side, known by the letter (or digit) that travels. An option's
/// `id` is the letter, its `text` the caption; the option button's name is the field's with the letter
/// appended.
class LetterField : public ValueField {
public:
    LetterField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Letter, spec) {}
    QStringList Words() const override;
};

/// A whole number in the range that its declaration gives.
class NumberField : public ValueField {
public:
    static constexpr int UsualMost = 999999;

    NumberField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Number, spec) {}
    int Least() const { return Spec().least; }
    int Most() const { return Spec().most > 0 ? Spec().most : UsualMost; }
    int Value() const { return Draft().toInt(); }
    void SetValue(int value) { SetDraft(QString::number(value)); }
    QString Problem() const override;
    void Tidy() override;
};

/// An amount of money: kept with a decimal point and without group marks, travels as one blank when empty.
class MoneyField : public ValueField {
public:
    MoneyField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Money, spec) {}
    int Decimals() const { return m_decimals; }
    void SetDecimals(int decimals);
    /// The amount that an operator typed, with the base currency's number of decimals; the text itself when
    /// it is no amount.
    QString Normalised(const QString& typed) const;
    QString Problem() const override;
    void Tidy() override;

protected:
    QString FromWire(const QString& value) const override;
    QString ToWire() const override;

private:
    int m_decimals = 2;
};

/// A date, kept in the text form that travels, which may be followed by a fixed text.
class DateField : public ValueField {
public:
    DateField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Date, spec) {}
    /// The draft as a date; invalid when it is blank.
    QDate Date() const { return QDate::fromString(Draft(), Format()); }
    /// The text form of the draft.
    QString Format() const { return Spec().format.isEmpty() ? WireDate : Spec().format; }
    void SetDate(QDate date) { SetDraft(date.isValid() ? date.toString(Format()) : QString()); }
    /// A date in the locale's short form, with or without marks between the parts, or as 2026-11-21; anything
    /// else stays as it was typed and is a problem.
    void TypeIn(const QString& text);
    QString DisplayText() const override;
    QString Problem() const override;

protected:
    QString FromWire(const QString& value) const override;
    QString ToWire() const override { return IsBlank() ? QString() : Draft() + Spec().suffix; }
};

/// A time of day, kept in the text form that travels. It may be missing, and it may be one of a few words
/// ("Closed") that stand where a time would.
class TimeField : public ValueField {
public:
    TimeField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Time, spec) {}
    QTime Time() const { return QTime::fromString(Draft(), Format()); }
    void SetTime(QTime time) { SetDraft(time.isValid() ? time.toString(Format()) : QString()); }
    /// One of the words, or a time as people write it ("8:30 pm", "2030", "8"); anything else stays as it was
    /// typed and is a problem.
    void TypeIn(const QString& text);
    QString DisplayText() const override;
    QString Problem() const override;

private:
    QString Format() const { return Spec().format.isEmpty() ? "HH:mm" : Spec().format; }
};

/// A number with a unit that travels as one text: the unit's letter before the number or behind it.
class IntervalField : public ValueField {
public:
    static constexpr int UsualMost = 9999;

    IntervalField(Form& form, const FieldSpec& spec)
        : ValueField(form, Kind::Interval, spec) {}
    const QList<PickItem>& Units() const { return Spec().options; }
    int Most() const { return Spec().most > 0 ? Spec().most : UsualMost; }
    /// The number as text (blank when there is none) and the unit's letter (the first unit's when there is
    /// none).
    QString Number() const;
    QString Unit() const;
    void SetParts(const QString& number, const QString& unit);
    /// The operator chose another unit; the number stays unless the field converts it.
    virtual void ChangeUnit(const QString& unit) { SetParts(Number(), unit); }
    bool IsBlank() const override { return Number().trimmed().isEmpty(); }
    /// "3 years".
    QString DisplayText() const override;
    QString Problem() const override;
    void Tidy() override;
};

} // namespace sysadmin
