#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct PatronNoteTypeForm : Form {
    TextField txtName{
        *this, {.name = "txtName", .tag = "D", .caption = tr("Name:"), .maxLength = 40, .required = true}};
};

/// Patron note types: the kinds of notes that staff write into patron records.
class frmCirculation_PatronNoteTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_PatronNoteTypes(Application& application, QWidget* parent);

private:
    PatronNoteTypeForm m_form;
};

} // namespace sysadmin
