#pragma once
/// What the file calls of the stand-in share. For the stand-in's own use.
#include <cerrno>
#include <sys/types.h>

/// The security descriptor of GetFileSecurityW: the access rights of a file, as chmod and chown take them.
struct CFileSecurity
{
    mode_t mode;
    uid_t owner;
    gid_t group;
};

/// Gives the open file these rights. Owner and group stay the caller's where the system does not let them be given
/// away; the file is then open to fewer people, never to more. False, with errno, if the rights cannot be set.
bool ApplySecurity(int descriptor, const CFileSecurity& security);

/// Repeats a call that a signal has interrupted; not for ever, in case the system interrupts it each time.
template <typename Call>
auto RetryInterrupted(Call call)
{
    auto result = call();
    for (int i = 0; result < 0 && errno == EINTR && i < 100; ++i)
        result = call();
    return result;
}
