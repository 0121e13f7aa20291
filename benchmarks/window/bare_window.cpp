// The least that a program with a window does: an application with one empty main window, in this program's style.

#include "PaintSignal.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QApplication::setStyle(new VelgorStyle);
    QMainWindow window;
    const PaintSignal signal([&window](const QObject *painted) { return painted == &window; });
    window.resize(1280, 800);
    window.show();
    return QCoreApplication::exec();
}
