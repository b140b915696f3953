#include "exact/ScreenDriver.h"

#include <gtest/gtest.h>

namespace sysadmin::exact {

namespace {

class ExactScreen : public testing::TestWithParam<QString> {};

TEST_P(ExactScreen, IsWhatItsRowsSay) {
    for (const QString& difference : ScreenDriver(FindScreen(GetParam())).Run())
        ADD_FAILURE() << difference.toStdString();
}

QStringList Keys() {
    QStringList keys;
    for (const Screen& screen : AllScreens())
        keys.append(screen.key);
    return keys;
}

std::string NameOf(const testing::TestParamInfo<QString>& key) {
    return key.param.toStdString();
}

INSTANTIATE_TEST_SUITE_P(All, ExactScreen, testing::ValuesIn(Keys()), NameOf);

} // namespace

} // namespace sysadmin::exact
