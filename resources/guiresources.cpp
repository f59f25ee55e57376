#include "resources/guiresources.h"

#include <QtGlobal>

void initGuiResources()
{
    Q_INIT_RESOURCE(resources);
    Q_INIT_RESOURCE(translations);
}
