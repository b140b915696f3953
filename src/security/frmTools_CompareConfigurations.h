#pragma once

#include "core/data/Communication.h"
#include "framework/FormScreen.h"
#include "security/Configuration.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace sysadmin {

class DifferenceModel;

/// Compares this library's settings with files or with another library, and copies chosen records after a
/// preview.
class frmTools_CompareConfigurations : public FormScreen {
    Q_OBJECT

public:
    frmTools_CompareConfigurations(Application& application, QWidget* parent);
    ~frmTools_CompareConfigurations() override;

    void LoadScreen() override;

private:
    /// With what this library is compared.
    enum class With { Nothing, Folder, Library };

    void BuildTree();
    void CompareWithFolder();
    void CompareWithLibrary();
    void ExportToFolder();
    void CompareAgain();
    void Compare();
    void Forget();
    void ShowFound(const ConfigurationDifferences& found);
    void Copy();
    void ApplyFilter();
    void ShowCounts();
    void OnSubjectChanged(const QString& subject);
    bool IntoOther() const;
    ConfigurationServer Own();
    ConfigurationServer Target();
    QString SourceName() const;
    ConfigurationFiles NeededFiles() const;

    With m_with = With::Nothing;
    QString m_folder;
    std::unique_ptr<Communication> m_other; // signed on while it is compared with
    ConfigurationFiles m_files;             // of the source
    ConfigurationDifferences m_found;
    QString m_sum;
    bool m_copying = false;

    DifferenceModel* m_model = nullptr;
    QLabel* lblSummary = nullptr;
    QLabel* lblCounts = nullptr;
    QComboBox* cboDirection = nullptr;
    QComboBox* cboKinds = nullptr;
    QLineEdit* txtFilter = nullptr;
    QTreeView* tvwDifferences = nullptr;
    QPushButton* cmdFolder = nullptr;
    QPushButton* cmdLibrary = nullptr;
    QPushButton* cmdExport = nullptr;
    QPushButton* cmdAll = nullptr;
    QPushButton* cmdNone = nullptr;
    QPushButton* cmdExpand = nullptr;
    QPushButton* cmdCompare = nullptr;
    QPushButton* cmdCopy = nullptr;
};

} // namespace sysadmin
