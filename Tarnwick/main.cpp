// Placeholder entry point until the main window exists: starts and quits.
#include <QApplication>

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  return 0;
}
