// The main() of every test program: a QApplication on the offscreen platform, then GoogleTest.
#include <QApplication>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// A test whose input ends the run queues the application's exit; with no loop running, that exit stays
// standing and would close the next test's first modal window at once. One turn of the application's own
// loop before each test spends it.
class SpentExit : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QApplication::exec();
    }
};

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ORVEL_NO_SHOW", "1");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new SpentExit);
    return RUN_ALL_TESTS();
}
