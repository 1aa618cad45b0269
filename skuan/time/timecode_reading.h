// What a count of fields says, which timecodes work out once and remember.
#pragma once

namespace skuan {

struct TimecodeReading
{
    unsigned days = 0;
    unsigned char hours = 0, minutes = 0, seconds = 0, frames = 0;
    bool f2 = false; ///< the second field of the frame
};

} // namespace skuan
