#pragma once
#include "platform/text.h"

/// A program of the tests beside this one, with one argument; ended at the latest with the object.
class CChildProcess
{
public:
    CChildProcess(const char* pProgram, const WString& argument);
    ~CChildProcess() { Kill(); }
    CChildProcess(const CChildProcess&) = delete;
    CChildProcess& operator=(const CChildProcess&) = delete;

    /// Ends it at once, wherever it stands, and waits until it is gone. False if it had ended by itself before.
    bool Kill();

private:
    long long m_process; ///< 0 when it is gone
};
