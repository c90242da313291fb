#include "ui/mywidget.h"

#include <QCloseEvent>

MyWidget::MyWidget()
{
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);
}

void MyWidget::closeEvent(QCloseEvent* ev)
{
    emit closeWindow(ev);
    ev->ignore();
}
