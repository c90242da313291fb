#include "app/toolbarcontrol.h"

#include "ui/mainwindow.h"

#include <QCoreApplication>
#include <QQuickItem>
#include <QVariant>

ToolbarControl::ToolbarControl(MainWindow& itsWindow, QObject* parent)
    : QObject(parent)
    , window(itsWindow)
{
    connect(window.rootObject(), SIGNAL(isLoadingChanged()), this, SLOT(onLoadingChanged()));
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &ToolbarControl::onQuit);
}

void ToolbarControl::onLoadingChanged()
{
    hidden = ViewRoot(window).isLoading();
    if (hidden)
        hiding.hideAnnotoraAnnotationToolbar();
    else
        showing.showAnnotoraAnnotationToolbar();
}

void ToolbarControl::onQuit()
{
    if (hidden)
        showing.showAnnotoraAnnotationToolbar();
}
