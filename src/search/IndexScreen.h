#pragma once

#include "framework/MaintenanceScreen.h"
#include "search/IndexForm.h"

namespace sysadmin {

/// What distinguishes the screens of search indexes.
struct IndexSpec {
    wire::indexes::Family family;
    QString formName;
    QString caption; ///< of the window
    QString subject;
    QString word; ///< "KSrch" makes "LstKSrch", "GetKSrch" and so on
    QString loadCaption;
    QString editCaption;
    QString saveCaption;
    QString deleteCaption{}; ///< empty: the set of indexes is the system's, none is added or deleted
};

IndexSpec KeywordIndexes();
IndexSpec HoldingsKeywordIndexes();
IndexSpec CompositeIndexes();
IndexSpec HeadingIndexes();

/// The screen of a family of search indexes.
class IndexScreen : public MaintenanceScreen {
    Q_OBJECT

public:
    IndexScreen(Application& application, const IndexSpec& spec, QWidget* parent);

protected:
    void BeforeLoad() override;
    void ReadRecord(Table& table) override;
    bool MayDeleteRow(const GridRow& row) const override;

private:
    void LoadDisplays();
    void LoadComponents();
    QList<GridRow> ReadCodes(const QString& request, const QString& codeTag, const QString& nameTag,
                             const QString& caption);

    IndexSpec m_spec;
    IndexForm& m_form;
};

} // namespace sysadmin
