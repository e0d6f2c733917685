#pragma once
#include "tests/support/Readable.h"

#include <new>

/// Counts the allocations of this program by new, malloc and realloc, and can make one of them fail.
namespace Allocation
{
/// Makes the count-th allocation from now on fail; 0: none.
void FailAt(long count);
/// Whether that allocation was reached and failed.
bool HasFailed();
/// Allocated blocks. Exact only natively: on Windows the C++ runtime is a DLL with its own calls of malloc.
long CountLive();

enum class Blocks
{
    AreFreed,
    MayStay, ///< a failed operation may keep part of what it made
};

/// Calls row repeatedly. In the first call the first allocation of its operation fails, in the second call the second
/// one, and so on until none fails. A row sets up its objects, passes the operation to its argument, and then checks
/// the objects. The operation may throw only std::bad_alloc, and may not leak.
template <typename Row>
void FailEach(Row row, Blocks blocks = Blocks::AreFreed)
{
    constexpr long limit = 5000;
    for (long count = 1; count < limit; ++count)
    {
        SCOPED_TRACE(count);
        const long live = CountLive();
        bool hasFailed = false;
        row(
            [&](auto operation)
            {
                FailAt(count);
                try
                {
                    operation();
                }
                catch (const std::bad_alloc&)
                {
                }
                hasFailed = HasFailed();
                FailAt(0);
            });
        if (testing::Test::HasFailure())
            return;
        if (!hasFailed)
        {
            EXPECT_GT(count, 1) << "nothing was allocated";
            return;
        }
        if (!OnWindows && blocks == Blocks::AreFreed)
        {
            ASSERT_EQ(CountLive(), live) << "blocks are left";
        }
    }
    FAIL() << "no end of allocations";
}
} // namespace Allocation
