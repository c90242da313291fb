#include "app/resources.h"

#include <QtGlobal>

// The macro declares functions, which must not end up in a namespace.
void initResources()
{
    Q_INIT_RESOURCE(views);
    Q_INIT_RESOURCE(font);
    Q_INIT_RESOURCE(translations);
    Q_INIT_RESOURCE(pictures);
}
