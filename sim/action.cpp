#include "action.h"

bool Action::touchesStatusFile() const
{
    return kind == Firmware || decidesResult();
}

bool Action::decidesResult() const
{
    return kind == Status || kind == Raw || kind == Remove;
}
