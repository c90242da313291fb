// The one member of GS that needs screens, by itself: programs without any use the rest.

#include "display/resolutionchangenotifier.h"
#include "settings/globalsettings.h"

#include <QGuiApplication>
#include <QScreen>

void GS::init()
{
    const QRect geometry = QGuiApplication::primaryScreen()->geometry();
    screenWidth = geometry.width();
    screenHeight = geometry.height();
    referenceLength = referenceLength / static_cast<double>(screenWidth) * 1920.0;
    connect(ResolutionChangeNotifier::instance(), &ResolutionChangeNotifier::resolutionChanged,
            this, &GS::onResolutionChanged);
}
