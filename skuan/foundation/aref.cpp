#include <skuan/foundation/aref.h>

AReferenced::~AReferenced() = default;

void AReferenced::full_release()
{
    delete this;
}
