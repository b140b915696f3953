#pragma once

#include "circulation/MatrixPicture.h"

#include <QWidget>

#include <functional>

namespace sysadmin {

/// What the colours of a map of a matrix mean.
class MatrixLegend : public QWidget {
    Q_OBJECT

public:
    explicit MatrixLegend(QWidget* parent);
    void SetMeasure(MatrixMeasure measure, bool compares);
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Calls `paint` with the place of each part; answers the height.
    int Arrange(int width, const std::function<void(int part, const QRect& place)>& paint) const;

    QStringList m_classes;
    QStringList m_parts;
};

} // namespace sysadmin
