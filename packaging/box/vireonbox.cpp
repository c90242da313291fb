// vireon-box TEXT: shows a text in a box and ends when that is closed. The launcher tells by it why
// the program cannot be started.
#include <QApplication>
#include <QIcon>
#include <QMessageBox>

#include <cstdio>

int main(int argc, char* argv[])
{
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    const QApplication application(argc, argv);
    if (QCoreApplication::arguments().size() != 2) {
        std::fputs("usage: vireon-box TEXT\n", stderr);
        return 2;
    }
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("vireon")));
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Vireon"),
                    QCoreApplication::arguments().at(1));
    box.setTextFormat(Qt::PlainText);
    box.exec();
    return 0;
}
