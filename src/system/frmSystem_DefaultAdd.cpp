#include "system/frmSystem_DefaultAdd.h"

#include <QPushButton>

namespace sysadmin {

frmSystem_DefaultAdd::frmSystem_DefaultAdd(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSystem_DefaultAdd", tr("Default Address"), Area::System, parent) {
    QList<PutStep> puts{PutValue(m_form.txtName)};
    for (const Field* field : m_form.PostalFields())
        puts.append(PutValue(*field));
    QList<Layout> layout = m_form.PostalLayout();
    layout.prepend(m_form.txtName);
    Build({.subject = tr("Default Address"),
           .word = "DAdr",
           .plural = "Default Address",
           .frameNoun = tr("Default Address"),
           .existsTag = "LNm"},
          m_form, Below(layout), puts);
    QPushButton* cmdClear = MakeButton("cmdClear", tr("C&lear"));
    cmdClear->setVisible(!IsReadOnly());
    AddButton(cmdClear);
    connect(cmdClear, &QPushButton::clicked, this, [this] {
        m_form.EmptyDrafts();
        View().FocusFirst();
    });
}

} // namespace sysadmin

#include "moc_frmSystem_DefaultAdd.cpp"
