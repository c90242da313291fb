// bench-floor gl|software: the least that shows a Qt Quick view in a window of widgets, drawn in
// one of the two ways. What scripts/bench holds the program's start and memory against. It has the
// flags and the size of the program's window, and ends with SIGTERM.

#include <QApplication>
#include <QBoxLayout>
#include <QQuickView>
#include <QWidget>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    if (app.arguments().value(1) == QLatin1String("software")) {
        QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }
    QQuickView view;
    view.setColor(Qt::darkGray);
    QWidget window;
    QWidget* container = QWidget::createWindowContainer(&view);
    container->setMinimumSize(680, 240);
    auto* layout = new QBoxLayout(QBoxLayout::LeftToRight, &window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(container);
    window.show();
    return QApplication::exec();
}
