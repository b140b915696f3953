#pragma once

#include <QDialog>

#include <functional>

namespace sysadmin {

/// The about box: the program, its version and what it runs on (`frmAbout`).
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    /// `showComponents` shows what the program stands on; without it there is no button for that.
    explicit AboutDialog(QWidget* parent = nullptr, const std::function<void()>& showComponents = {});
};

} // namespace sysadmin
