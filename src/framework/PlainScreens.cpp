#include "framework/PlainScreens.h"

#include "framework/MaintenanceScreen.h"
#include "framework/SingleRecordScreen.h"

namespace sysadmin {

namespace {

QString NameOf(const ScreenHead& head) {
    return head.name.isEmpty() ? "frm" + head.key : head.name;
}

class PlainTableScreen : public MaintenanceScreen {
public:
    PlainTableScreen(Application& application, const PlainTable& plain, QWidget* parent)
        : MaintenanceScreen(application, NameOf(plain.head), plain.head.caption, plain.head.area, parent) {
        AddTable(plain.table, KeepForm<DeclaredForm>(plain.fields), plain.layout);
        Finish();
    }
};

class PlainRecordScreen : public SingleRecordScreen {
public:
    PlainRecordScreen(Application& application, const PlainRecord& plain, QWidget* parent)
        : SingleRecordScreen(application, NameOf(plain.head), plain.head.caption, plain.head.area, parent) {
        Build(plain.record, KeepForm<DeclaredForm>(plain.fields), plain.layout);
    }
};

} // namespace

Screen* PlainTable::MakeScreen(Application& application, QWidget* parent) const {
    return new PlainTableScreen(application, *this, parent);
}

Screen* PlainRecord::MakeScreen(Application& application, QWidget* parent) const {
    return new PlainRecordScreen(application, *this, parent);
}

} // namespace sysadmin
