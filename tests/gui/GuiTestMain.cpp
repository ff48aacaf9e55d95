// The screens' tests run with an offscreen QApplication.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);  // settings and recovery files of tests apart
    QApplication application(argc, argv);
    QApplication::setApplicationName("Tavrelle");
    QApplication::setOrganizationName("Tavrelle");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
