#pragma once

#include <QDialog>

namespace sysadmin {

/// The about box: the program, its version and what it runs on (`frmAbout`).
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

} // namespace sysadmin
