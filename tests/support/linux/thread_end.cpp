#include <support/thread_end.h>

namespace support {
namespace {

struct End
{
    std::function<void()> last;
    ~End()
    {
        if (last)
            last();
    }
};

} // namespace

void at_thread_end(std::function<void()> last)
{
    static thread_local End end; // goes last, as it came first
    end.last = std::move(last);
}

} // namespace support
