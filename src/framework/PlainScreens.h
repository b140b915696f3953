#pragma once

#include "framework/Declaration.h"
#include "framework/forms/DeclaredForm.h"

class QWidget;

namespace sysadmin {

class Application;
class Screen;

/// What is said about every screen that is made from data.
struct ScreenHead {
    QString key;         ///< of its navigation item ("Acquisitions_VendorTypes")
    int helpContext = 0; ///< number of its help topic
    QString caption;     ///< of its window
    Area area = Area::System;
    QString name{}; ///< of the screen; empty: "frm" and the key
};

/// A maintenance screen without behaviour of its own: a code table is this and nothing else.
struct PlainTable {
    ScreenHead head;
    TableSpec table;
    QList<FieldDeclaration> fields;
    Layout layout = Below({}); ///< without children: the fields below each other

    Screen* MakeScreen(Application& application, QWidget* parent) const;
};

/// A screen that keeps one record, without behaviour of its own.
struct PlainRecord {
    ScreenHead head;
    RecordSpec record;
    QList<FieldDeclaration> fields;
    Layout layout = Below({});

    Screen* MakeScreen(Application& application, QWidget* parent) const;
};

} // namespace sysadmin
