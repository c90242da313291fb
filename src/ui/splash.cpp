#include "ui/splash.h"

#include "ui/pngpicture.h"

#include <QBitmap>
#include <QDebug>
#include <QPixmap>
#include <QSplashScreen>

Splash::Splash(QString brand)
{
    qDebug() << "splash image for brand: " << brand;
    const QPixmap picture = QPixmap::fromImage(
        pngPictureIn(QLatin1String(":/qml/splash_") + brand + QLatin1String(".png")));
    splashScreen = std::make_unique<QSplashScreen>(picture, Qt::WindowFlags());
    splashScreen->setMask(picture.mask());
    connect(this, &Splash::splashShowWindow, this, &Splash::slotShowWindow);
    connect(this, &Splash::splashCloseWindow, this, &Splash::slotCloseWindow);
    slotShowWindow();
}

Splash::~Splash() = default;

void Splash::slotShowWindow()
{
    qDebug() << "showing splash ";
    shown = true;
    splashScreen->setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint
                                 | Qt::WindowStaysOnTopHint);
    splashScreen->show();
    splashScreen->raise();
}

void Splash::slotCloseWindow()
{
    qDebug() << "closing splash ";
    if (!shown)
        return;
    splashScreen->close();
    shown = false;
}
