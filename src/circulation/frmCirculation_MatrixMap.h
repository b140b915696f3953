#pragma once

#include "circulation/MatrixMap.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;

namespace sysadmin {

class MatrixLegend;

/// The loan rules of a policy group as a map, beside another group's where the operator wants to compare.
class frmCirculation_MatrixMap : public QDialog {
    Q_OBJECT

public:
    frmCirculation_MatrixMap(Application& application, const MatrixGroup& group, QWidget* parent);
    ~frmCirculation_MatrixMap() override;

    /// Reads the rules; false after a failure, which was reported.
    bool Load();
    /// Whether rules were changed from here.
    bool IsChanged() const { return m_isChanged; }

private:
    QWidget* MakeTools();
    QWidget* MakeMaps();
    QWidget* MakeButtons();
    void OfferGroups();
    void Compare();
    void ShowMaps();
    void Explain(const MatrixMap& map, MatrixPicture::Cell cell);
    void Choose(const MatrixPicture& picture, MatrixPicture::Cell cell);
    void Add();
    void ModifyMultiple();
    void RefreshButtons();
    void Reload();

    Application& m_application;
    MatrixGroup m_group;
    MatrixPicture m_picture;
    std::unique_ptr<MatrixPicture> m_other; // null: nothing is compared
    bool m_isChanged = false;
    QComboBox* m_measure = nullptr;
    QComboBox* m_compare = nullptr;
    QLabel* m_name = nullptr;
    QLabel* m_otherName = nullptr;
    QWidget* m_otherSide = nullptr;
    QSplitter* m_sides = nullptr;
    bool m_isFollowing = false; // one map scrolls as the other does
    MatrixMap* m_map = nullptr;
    MatrixMap* m_otherMap = nullptr;
    QLabel* m_words = nullptr;
    MatrixLegend* m_legend = nullptr;
    QPushButton* m_cmdAdd = nullptr;
    QPushButton* m_cmdModifyMultiple = nullptr;
    QPushButton* m_cmdTestLoan = nullptr;
};

} // namespace sysadmin
