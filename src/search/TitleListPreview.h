#pragma once

#include "framework/forms/GridRow.h"

#include <QTableWidget>

namespace sysadmin {

struct TitleListForm;

/// Shows a few titles as the title list will show them: the columns that are chosen, in their order, under
/// their headings and in their widths.
class TitleListPreview : public QTableWidget {
    Q_OBJECT

public:
    /// The form outlives the preview.
    TitleListPreview(const TitleListForm& form, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Draw();

    const TitleListForm& m_form;
    QTimer* m_later;
    QList<GridRow> m_drawn; // the columns, as they were drawn last
};

} // namespace sysadmin
