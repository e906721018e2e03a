// The one QApplication of a window test binary, made on first use and never
// destroyed: destroyed among the exit-time statics, it would tear down input
// devices whose platform is already gone.
#pragma once
#include <QApplication>

namespace ombra::test {

inline QApplication& App() {
    static int argc = 1;
    static char name[] = "ombra-test";
    static char* argv[] = {name, nullptr};
    static QApplication* app = qApp ? qApp : new QApplication(argc, argv);
    return *app;
}

}  // namespace ombra::test
