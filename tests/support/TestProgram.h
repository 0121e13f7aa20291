#pragma once

#include <QTest>

/// One program holds the test classes of a folder, as starting and linking a program for each of a hundred classes
/// takes longer than compiling them. A run is for one class alone, so that no class sees what another one left.
namespace TestProgram {

using Run = int (*)(int argc, char **argv);

/// Makes a class known under its name; called before main(). The name lives as long as the program.
class Registration {
public:
    Registration(const char *className, Run run);
};

/// Runs the test functions of a class inside an application object of its own.
template <typename Application, typename TestClass>
int run(int argc, char **argv)
{
    Application application(argc, argv);
    Application::setAttribute(Qt::AA_Use96Dpi, true);
    TestClass test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace TestProgram

/// At the end of a test's file: its class, and the application object that it needs.
#define VELGOR_TEST_IN(Application, TestClass)                                                                         \
    namespace {                                                                                                        \
    const TestProgram::Registration registration##TestClass(#TestClass, TestProgram::run<Application, TestClass>);     \
    }

/// For a class without a window.
#define VELGOR_TEST(TestClass) VELGOR_TEST_IN(QCoreApplication, TestClass)

/// For a class with widgets. The file includes QApplication.
#define VELGOR_WIDGET_TEST(TestClass) VELGOR_TEST_IN(QApplication, TestClass)
