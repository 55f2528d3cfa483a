// The least that a program with a window can be: what the start of the program is compared with.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  window.setWindowTitle(QStringLiteral("Plain window"));
  window.setCentralWidget(new QLabel(QStringLiteral("A label across the middle of the window")));
  window.resize(900, 500);
  window.show();
  return QApplication::exec();
}
