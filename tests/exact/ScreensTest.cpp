#include "exact/ScreenDriver.h"

#include <gtest/gtest.h>

namespace sysadmin::exact {

namespace {

class ExactScreen : public ::testing::TestWithParam<QString> {};

TEST_P(ExactScreen, IsWhatItsRowsSay) {
    for (const QString& difference : ScreenDriver(FindScreen(GetParam())).Run())
        ADD_FAILURE() << difference.toStdString();
}

QStringList ScreenKeys() {
    QStringList keys;
    for (const Screen& screen : AllScreens())
        keys.append(screen.key);
    return keys;
}

INSTANTIATE_TEST_SUITE_P(All, ExactScreen, ::testing::ValuesIn(ScreenKeys()), NameOfKey);

} // namespace

} // namespace sysadmin::exact
