// What a program with a window of Qt costs at the least.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(1240, 800);
    window.show();
    return QApplication::exec();
}
