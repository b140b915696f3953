#pragma once

#include "framework/forms/Field.h"

#include <functional>

namespace sysadmin {

/// Where the fields of a form stand: a short description that the form view draws.
struct Layout {
    enum class Kind {
        Field,  ///< one field with its label
        Below,  ///< its children below each other, labels and controls aligned
        Beside, ///< its children side by side, aligned with the others of their kind below each other
        Frame,  ///< a titled frame around what stands below each other
        Flow,   ///< frames side by side, as many as fit; the others below them
        Tabs,   ///< a tab widget; its children are pages
        Page,   ///< one tab; its children below each other
        Note,   ///< explaining text
        Slot,   ///< a widget that the screen makes itself, by name
        Block,  ///< rows of fields under common headings; its children are the rows, each with its heading
        Button, ///< a button of its own among the fields
    };

    Layout(Field& one)
        : kind(Kind::Field)
        , field(&one) {} // NOLINT: a field stands for itself in a layout
    /// The field of this control name, where the form is made from data.
    Layout(const char* fieldName)
        : kind(Kind::Field)
        , name(fieldName) {} // NOLINT
    Layout(Kind theKind, const QString& theName, const QString& theText, const QList<Layout>& theChildren)
        : kind(theKind)
        , name(theName)
        , text(theText)
        , children(theChildren) {}

    Kind kind;
    QString name; ///< of a field, frame, tab widget or slot
    QString text; ///< a frame's or page's caption, a note's text
    Field* field = nullptr;
    QList<Layout> children;
    int most = 0;                     ///< of a flow: so many frames side by side at the most
    QStringList headings{};           ///< of a block's columns
    std::function<void()> press{};    ///< of a button
    std::function<bool()> mayPress{}; ///< of a button; none: whenever the fields can be edited
};

inline Layout Below(const QList<Layout>& children) {
    return {Layout::Kind::Below, {}, {}, children};
}
inline Layout Beside(const QList<Layout>& children) {
    return {Layout::Kind::Beside, {}, {}, children};
}
inline Layout Frame(const QString& name, const QString& caption, const QList<Layout>& children) {
    return {Layout::Kind::Frame, name, caption, children};
}
inline Layout Flow(int most, const QList<Layout>& frames) {
    Layout flow{Layout::Kind::Flow, {}, {}, frames};
    flow.most = most;
    return flow;
}
inline Layout Tabs(const QString& name, const QList<Layout>& pages) {
    return {Layout::Kind::Tabs, name, {}, pages};
}
inline Layout Page(const QString& caption, const QList<Layout>& children) {
    return {Layout::Kind::Page, {}, caption, children};
}
/// The same for a page that rules of the form refer to.
inline Layout Page(const QString& name, const QString& caption, const QList<Layout>& children) {
    return {Layout::Kind::Page, name, caption, children};
}
/// A row of a block: its heading and a field per column.
inline Layout BlockRow(const QString& heading, const QList<Layout>& fields) {
    return {Layout::Kind::Beside, {}, heading, fields};
}
/// Fields without captions of their own under common headings: a week of opening hours. A screen reader says
/// both headings of a field.
inline Layout Block(const QStringList& headings, const QList<Layout>& rows) {
    Layout block{Layout::Kind::Block, {}, {}, rows};
    block.headings = headings;
    return block;
}
/// A field that stands elsewhere, too: both controls show and edit its value. `name` is this control's.
inline Layout Again(Field& field, const QString& name) {
    Layout again(field);
    again.name = name;
    return again;
}
inline Layout Button(const QString& name, const QString& caption, std::function<void()> press,
                     std::function<bool()> mayPress = {}) {
    Layout button{Layout::Kind::Button, name, caption, {}};
    button.press = std::move(press);
    button.mayPress = std::move(mayPress);
    return button;
}
inline Layout Note(const QString& text) {
    return {Layout::Kind::Note, {}, text, {}};
}
inline Layout Slot(const QString& name) {
    return {Layout::Kind::Slot, name, {}, {}};
}

} // namespace sysadmin
