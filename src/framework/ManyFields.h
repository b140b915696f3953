#pragma once

#include "framework/forms/DeclaredForm.h"
#include "framework/forms/Layout.h"

#include <map>
#include <memory>
#include <optional>

namespace sysadmin {

struct TableDeclaration;
struct TableSpec;

/// The fields that hold one value with which a record itself is saved, and that have a caption: those that a
/// file can bring.
QList<ValueField*> PlainFields(const Form& form, const TableSpec& spec);
/// Of these those that several records can have in common: neither code nor name nor anything else in which
/// records must differ, no mark that one of them has.
QList<ValueField*> CommonFields(const Form& form, const TableSpec& spec);

/// How well a column of the list says which record is meant; 0: not at all. What only the list tells counts
/// where the form has nothing by which a record is known.
int KeyWorth(const TableDeclaration& table, int column);

/// What the fields are called where they stand without the rest of their form: by their captions, and where
/// the form has one twice with that of the frame or page around it.
QStringList FieldTitles(const QList<const Field*>& fields, const Layout& layout);
/// The same in the headings of a file: the tag stands behind a caption that there is twice.
QStringList FileCaptions(const QList<const Field*>& fields);
/// The value as it goes into a file.
QString FileText(const Field& field);

/// Makes a text from a file the field's draft, as an operator would enter it: a choice by its text (or its
/// code, where it has one), Yes and No, a date as people here write it or as 2026-11-21. Answers what is
/// wrong with it; empty when nothing is. What a field says or holds already changes nothing.
QString EnterText(ValueField& field, const QString& text);

/// A value that a field is to get.
struct NewValue {
    ValueField* field = nullptr;
    QString draft;
};
/// Gives the fields these drafts as an operator does who enters one after the other, those first that the
/// others depend on. Answers what cannot be entered; empty when all was.
QString EnterDrafts(QList<NewValue> values);

/// A form that has a field of its own for each of some fields of another one: of the same kind, with the same
/// caption, limits and choices, and without its rules.
class CommonForm : public Form {
public:
    explicit CommonForm(const QList<ValueField*>& fields);

    /// The field that stands for the other form's; null: none does.
    ValueField* For(const Field& field) const;
    /// What is left of the other form's layout.
    Layout LayoutFrom(const Layout& layout) const;

private:
    std::optional<Layout> Part(const Layout& layout, QList<const Field*>& placed) const;

    QList<ValueField*> m_of;
    std::vector<std::unique_ptr<ValueField>> m_owned;
};

} // namespace sysadmin
