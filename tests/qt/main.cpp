#define DOCTEST_CONFIG_IMPLEMENT
#include <QApplication>
#include <doctest/doctest.h>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    doctest::Context context(argc, argv);
    return context.run();
}
