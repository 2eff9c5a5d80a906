// What a program with a window of Qt costs at the least: one line of text.

#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QLabel window(QStringLiteral("Ostrivane"));
    window.resize(1240, 800);
    window.show();
    return QApplication::exec();
}
