// The smallest program that needs headers, library and Qt of an installed tree.
#include <skuan/foundation/aref.h>

#include <QCoreApplication>

struct Thing : AReferenced
{
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    AReference<Thing> thing = new Thing;
    return thing ? 0 : 1;
}
