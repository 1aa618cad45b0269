#include <skuan/foundation/athread.h>

AThread::~AThread()
{
    quit();
    wait();
}
