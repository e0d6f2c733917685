#pragma once
#include <gtest/gtest.h>

#include <new>

/// The allocations of this program, by new, malloc and realloc. One of them can be made to fail.
namespace Allocation
{
/// The count-th from now on fails; 0: none.
void FailAt(long count);
/// Whether it has failed.
bool HasFailed();
/// Blocks in use. Exact natively only: on Windows the runtime's library has allocations of its own.
long CountLive();

/// Runs a row for a failure of the first allocation in its operation, of the second, and so on, until it gets
/// through. A row sets its objects up, calls the operation that it is given through the argument, and then looks
/// whether the objects are sound. What an operation throws must be std::bad_alloc, and nothing may be left behind.
template <typename Row>
void FailEach(Row row)
{
    constexpr long limit = 5000;
    for (long count = 1; count < limit; ++count)
    {
        SCOPED_TRACE(count);
        [[maybe_unused]] const long live = CountLive();
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
#ifndef _WIN32
        ASSERT_EQ(CountLive(), live) << "blocks are left";
#endif
    }
    FAIL() << "no end of allocations";
}
} // namespace Allocation
