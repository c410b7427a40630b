#pragma once
// Failing one file call of the emulated device in this process, as a full, broken or read-only
// disk would, and counting the calls of each kind.

#include "orvo/device/FaultInjection.h"

#include <vector>

namespace Orvo::Testing {

using Orvo::Emulator::FileCall;

class InjectedFault : public Orvo::Emulator::FaultInjector {
public:
    // The error of a write that the disk fills during: it writes half its bytes, and every later
    // write fails with ENOSPC.
    static constexpr int kShortWrite = -1;

    // Installed while the object lives. nth counts from 1; nth 0 fails nothing and only counts.
    InjectedFault(FileCall call = FileCall::Open, int nth = 0, int error = 0);
    ~InjectedFault() override;
    InjectedFault(const InjectedFault&) = delete;
    InjectedFault& operator=(const InjectedFault&) = delete;

    int beforeCall(FileCall call, std::size_t& length) override;

    // The kinds of the calls made so far, in order.
    const std::vector<FileCall>& calls() const { return m_calls; }
    bool fired() const { return m_fired; }

private:
    FileCall m_call;
    int m_nth;
    int m_error;
    bool m_fired = false;
    std::vector<FileCall> m_calls;
};

} // namespace Orvo::Testing
