// How many fields there are in a second.
#pragma once

#include <QString>

namespace simulator {

// A fraction, as 59.94 is none that ends: fields in so many seconds.
struct FieldRate
{
    int fields = 50;
    int seconds = 1;
};

// Of a VideoStandard's name, as in "1080_59_94i": its rate is what stands between the lines and the letter. A
// progressive standard has its pictures for fields. Any other text: 50.
FieldRate field_rate(const QString& standard);

} // namespace simulator
