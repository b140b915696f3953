#pragma once

#include "framework/SingleRecordScreen.h"
#include "framework/forms/DeclaredForm.h"

namespace sysadmin {

/// Which kinds of requests the current cluster takes, channel by channel.
class frmCirculation_RequestConfig : public SingleRecordScreen {
    Q_OBJECT

public:
    frmCirculation_RequestConfig(Application& application, QWidget* parent);

    void OnClusterChanged() override;

protected:
    bool BeforeLoad() override;
    void PutKey() override;
};

} // namespace sysadmin
